#include "tests/support/EqualizeFixture.h"
#include "tests/support/PseudoTerminal.h"

#include <cmath>
#include <complex>
#include <map>
#include <numbers>
#include <random>
#include <set>
#include <sstream>
#include <thread>

#include <sys/stat.h>

namespace {

Sound noise(int rate, int channels, std::size_t frames, float level = 1.0F) {
    Sound sound{rate, channels, std::vector<float>(frames * static_cast<std::size_t>(channels))};
    std::mt19937 generator(1);
    std::uniform_real_distribution<float> distribution(-level, level);
    for (float& sample : sound.samples) sample = distribution(generator);
    return sound;
}

std::complex<double> spectrumAt(const Sound& sound, double frequency) {
    const std::complex<double> step = std::polar(1.0, -2.0 * std::numbers::pi * frequency / sound.rate);
    std::complex<double> sum = 0.0;
    for (auto sample = sound.samples.rbegin(); sample != sound.samples.rend(); ++sample)
        sum = sum * step + static_cast<double>(*sample);
    return sum;
}

double decibels(std::complex<double> value) {
    return 20.0 * std::log10(std::abs(value));
}

struct Band {
    double frequency;
    double gain;
    double q;
};

/// The peak section of the contract, in the form of Regalia and Mitra, at a rate for which it was not necessarily
/// designed: the angles are those that the listener meets.
std::complex<double> sectionAt(const Band& band, double frequency, double rate) {
    const double gain = std::pow(10.0, band.gain / 20.0);
    const double cut = std::min(gain, 1.0);
    const double t = std::tan(std::numbers::pi * band.frequency / (rate * band.q));
    const double c = -std::cos(2.0 * std::numbers::pi * band.frequency / rate);
    const double k = (t - cut) / (t + cut);
    const std::complex<double> z1 = std::polar(1.0, -2.0 * std::numbers::pi * frequency / rate);
    const std::complex<double> allpass = (-k + c * (1.0 - k) * z1 + z1 * z1) / (1.0 + c * (1.0 - k) * z1 - k * z1 * z1);
    return 1.0 + (gain - 1.0) / 2.0 * (1.0 - allpass);
}

TEST_F(EqualizeCommand, GivesBackTheInputAtTheVolumeFromTheFirstSampleOnWhateverTheBlock) {
    struct Row {
        int rate;
        int channels;
        std::size_t frames;
        const char* block;
        const char* volume;
    };
    const Row rows[] = {
        {44100, 1, 0, "8192", "0"},  {48000, 2, 1, "1", "0"},           {44100, 3, 2048, "1000", "6"},
        {44100, 3, 5000, "1", "-6"}, {96000, 6, 20000, "1000000", "6"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.rate << " Hz, " << row.channels << " channels, block " << row.block);
        Sound sound = noise(row.rate, row.channels, row.frames, 3.0F);
        writeSound(path("in.wav"), sound);
        const auto gain = static_cast<float>(std::pow(10.0, std::stod(row.volume) * 0.05));
        for (float& sample : sound.samples) sample *= gain;
        EXPECT_EQ(equalized({"--block", row.block, "--volume", row.volume}), sound.samples);
        const SoundFile output = readSound(path("out.wav"));
        EXPECT_EQ(output.rate, row.rate);
        EXPECT_EQ(output.channels, row.channels);

        constexpr std::size_t Delay = 2048;
        sound.samples.insert(sound.samples.begin(), Delay * static_cast<std::size_t>(row.channels), 0.0F);
        EXPECT_EQ(equalized({"--block", row.block, "--volume", row.volume, "--keep-latency"}), sound.samples);
    }
}

TEST_F(EqualizeCommand, HasTheResponseThatWasAskedForAtEveryRate) {
    struct Row {
        int rate;
        Arguments options;
        double volume;
        std::vector<Band> bands; ///< as they are to be heard
        const char* note;        ///< about the rate
    };
    constexpr const char* From48000 = "48000 Hz file: frequencies are scaled by 44100/48000";
    const Row rows[] = {
        {44100, {"--band", "1:gain=4"}, 0, {{20, 4, 5}}, ""},
        {48000, {"--band", "4:gain=-3"}, 0, {{20000, -3, 5}}, From48000},
        {48000, {"--band", "1:freq=21768.7,gain=6,q=1"}, 0, {{21768.7, 6, 1}}, From48000},
        {96000,
         {"--volume", "-3.5", "--band", "1:freq=60,gain=3,q=1", "--band", "2:freq=999,gain=-2,q=1", "--band",
          "2:freq=700,q=4"},
         -3.5,
         {{60, 3, 1}, {700, -2, 4}},
         "96000 Hz file: frequencies are scaled by 44100/96000"},
        {96000, {"--no-rate-correction", "--band", "1:gain=8"}, 0, {{20 * 96 / 44.1, 8, 5}}, "not corrected"},
        // Normalised values are for the effect as it stands, and override the others.
        {48000,
         {"--set", "2=0.5", "--set", "6=0", "--set", "10=1", "--set", "0=0.75", "--volume", "3"},
         -6,
         {{20 * std::pow(10, 1.5) * 48000 / 44100, 10, 1}},
         ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.rate << " Hz " << testing::PrintToString(row.options));
        Sound impulse{row.rate, 1, std::vector<float>(1 << 17)};
        impulse.samples[0] = 1.0F;
        writeSound(path("in.wav"), impulse);
        Arguments arguments = row.options;
        arguments.insert(arguments.end(), {path("in.wav"), path("out.wav")});
        const Outcome outcome = run(arguments);
        ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
        const Sound output = readSound(path("out.wav"));

        std::vector<double> frequencies = {25, 100, 440, 3000, 15000, row.rate * 0.49};
        for (const Band& band : row.bands)
            for (const double offset : {0.9, 1.0, 1.08}) frequencies.push_back(band.frequency * offset);
        for (const double frequency : frequencies) {
            double expected = row.volume;
            for (const Band& band : row.bands) expected += decibels(sectionAt(band, frequency, row.rate));
            EXPECT_NEAR(decibels(spectrumAt(output, frequency)), expected, 0.01) << frequency << " Hz";
        }
        EXPECT_NE(outcome.err.find(row.note), std::string::npos) << outcome.err;
        if (row.note == std::string()) {
            EXPECT_EQ(outcome.err.find("frequencies"), std::string::npos) << outcome.err;
        }
    }
}

TEST_F(EqualizeCommand, KeepsTheFormatUnlessTheExtensionNamesAnother) {
    struct Row {
        int input;
        const char* place;
        int output;
        bool exact;
    };
    const Row rows[] = {
        {SF_FORMAT_WAV | SF_FORMAT_PCM_16, "o.unknown", SF_FORMAT_WAV | SF_FORMAT_PCM_16, true},
        {SF_FORMAT_WAV | SF_FORMAT_PCM_U8, "o", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, true},
        {SF_FORMAT_WAV | SF_FORMAT_PCM_24, "o.AIF", SF_FORMAT_AIFF | SF_FORMAT_PCM_24, true},
        {SF_FORMAT_WAV | SF_FORMAT_FLOAT, "o.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_24, false},
        {SF_FORMAT_WAV | SF_FORMAT_ULAW, "o.au", SF_FORMAT_AU | SF_FORMAT_ULAW, true},
        {SF_FORMAT_WAV | SF_FORMAT_DOUBLE, "o.caf", SF_FORMAT_CAF | SF_FORMAT_DOUBLE, true},
        {SF_FORMAT_WAV | SF_FORMAT_PCM_16, "o.ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS, false},
        {SF_FORMAT_OGG | SF_FORMAT_VORBIS, "o.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_24, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << std::hex << row.input << " to " << row.place);
        writeSound(path("in"), noise(44100, 2, 5000, 0.9F), row.input, "A title");
        const Outcome outcome = run({path("in"), path(row.place)});
        ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
        const SoundFile input = readSound(path("in"));
        const SoundFile output = readSound(path(row.place));
        EXPECT_EQ(output.format, row.output) << std::hex << output.format;
        // AU files have no place for it.
        EXPECT_EQ(output.title, row.place == std::string("o.au") ? "" : "A title");
        EXPECT_EQ(output.frames(), input.frames());
        if (row.exact) {
            EXPECT_EQ(output.samples, input.samples);
        }
    }
}

TEST_F(EqualizeCommand, RoundsAndLimitsWhatGoesIntoWholeNumbersAndTellsOfIt) {
    constexpr float Step = 0x1p-23F;
    constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
    writeSound(path("in.wav"),
               {44100, 1, {1.0F, -1.0F, 1.5F, 0.6F * Step, 0.4F * Step, -0.6F * Step, -0.4F * Step, NaN}});
    const Outcome outcome = run({path("in.wav"), path("out.flac")});
    EXPECT_NE(outcome.err.find("2 samples were clipped to full scale; the highest is 3.52 dB"), std::string::npos)
        << outcome.err;
    EXPECT_EQ(readSound(path("out.flac")).samples,
              (std::vector<float>{1.0F - Step, -1.0F, 1.0F - Step, Step, 0.0F, -Step, 0.0F, 0.0F}));
    EXPECT_EQ(run({path("in.wav"), path("out.wav")}).err.find("clipped"), std::string::npos);
    EXPECT_TRUE(std::isnan(readSound(path("out.wav")).samples[7]));
}

TEST_F(EqualizeCommand, ReplacesItsOwnInputAndKeepsPermissionsAndLinks) {
    const Sound input = noise(44100, 1, 3000);
    writeSound(path("sound.wav"), input);
    std::filesystem::create_symlink("sound.wav", path("link.wav"));
    chmod(path("sound.wav").c_str(), 0640);

    const Outcome outcome = run({"--volume", "-12", path("link.wav"), path("link.wav")});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_TRUE(std::filesystem::is_symlink(path("link.wav")));
    const SoundFile output = readSound(path("sound.wav"));
    ASSERT_EQ(output.samples.size(), input.samples.size());
    EXPECT_NEAR(output.samples[7], input.samples[7] * std::pow(10.0, -0.6), 1e-6);
    struct stat file = {};
    stat(path("sound.wav").c_str(), &file);
    EXPECT_EQ(file.st_mode & 07777, 0640U);

    const Outcome fresh = run({path("sound.wav"), path("fresh.wav")}, [] { umask(027); });
    stat(path("fresh.wav").c_str(), &file);
    EXPECT_EQ(file.st_mode & 07777, 0640U);
    EXPECT_EQ(folder(), (std::vector<std::string>{"fresh.wav", "link.wav", "sound.wav"}));
}

TEST_F(EqualizeCommand, WritesACompleteFileIntoAPipe) {
    writeSound(path("in.wav"), noise(48000, 2, 5000));
    const auto quoted = [](const std::string& word) { return "'" + word + "'"; };
    const std::string line = quoted(EQ_EQUALIZE_PATH) + " --quiet " + quoted(path("in.wav")) + " /dev/stdout | cat > " +
                             quoted(path("out.wav"));
    ASSERT_EQ(std::system(line.c_str()), 0);
    EXPECT_EQ(readSound(path("out.wav")).samples, readSound(path("in.wav")).samples);
}

TEST_F(EqualizeCommand, LeavesNothingBehindWhenTheInputIsBad) {
    writeText(path("text.wav"), "This is not sound, whatever its name says.\n");
    writeText(path("out.wav"), "what was there");
    struct Row {
        const char* name;
        const char* message;
        int format = 0; ///< of a file that is made, and of which a share is kept
        double share = 0.0;
    };
    const Row rows[] = {
        {"missing.wav", "No such file"},
        {".", "Is a directory"},
        {"text.wav", "not a readable audio file"},
        {"empty.wav", "not a readable audio file", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0.0},
        {"header.wav", "not a readable audio file", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0.0001},
        {"frame.wav", "ends early: 239996 of 240000 bytes", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1.0 - 4.0 / 240044.0},
        {"cut.rf64", "ends early", SF_FORMAT_RF64 | SF_FORMAT_PCM_16, 0.5},
        {"cut.w64", "ends early", SF_FORMAT_W64 | SF_FORMAT_PCM_16, 0.5},
        {"cut.aiff", "ends early", SF_FORMAT_AIFF | SF_FORMAT_FLOAT, 0.7},
        {"cut.au", "ends early", SF_FORMAT_AU | SF_FORMAT_PCM_16, 0.7},
        {"cut.flac", "of 60000 frames could be read", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 0.7},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        if (row.format != 0) {
            // In AIFF, the title makes a chunk of odd length in front of the sound.
            const bool isAiff = row.name == std::string("cut.aiff");
            writeSound(path(row.name), noise(44100, 2, 60000, 0.5F), row.format, isAiff ? "odd" : nullptr);
            const auto size = static_cast<double>(std::filesystem::file_size(path(row.name)));
            std::filesystem::resize_file(path(row.name), static_cast<std::uintmax_t>(size * row.share));
        }
        const auto before = folder();
        expectFailure(run({path(row.name), path("out.wav")}), 1, row.message);
        EXPECT_EQ(folder(), before);
        EXPECT_EQ(contents(path("out.wav")), "what was there");
    }
}

TEST_F(EqualizeCommand, TakesAHeaderThatLeavesItsLengthOpen) {
    writeSound(path("in.wav"), noise(44100, 1, 3000), SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    std::string bytes = contents(path("in.wav"));
    for (const std::size_t sizeField : {4, 40}) bytes.replace(sizeField, 4, 4, '\xFF');
    const std::vector<float> expected = readSound(path("in.wav")).samples;
    writeText(path("in.wav"), bytes);
    EXPECT_EQ(equalized({}), expected);
}

TEST_F(EqualizeCommand, LosesNothingWhenTheOutputCannotBeWritten) {
    writeSound(path("in.wav"), noise(44100, 2, 60000), SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    writeSound(path("short.wav"), noise(44100, 2, 100), SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    std::filesystem::create_directory(path("folder"));
    const std::string text(1000, 'x');
    for (const char* const name : {"out.wav", "out.flac", "out.ogg"}) writeText(path(name), text);
    const auto before = folder();
    const auto limitTo = [](rlim_t bytes) {
        return [bytes] {
            const rlimit limit = {bytes, bytes};
            setrlimit(RLIMIT_FSIZE, &limit);
        };
    };
    struct Row {
        const char* input;
        std::string output;
        rlim_t limit;
        const char* message;
    };
    const Row rows[] = {
        {"in.wav", "/dev/full", RLIM_INFINITY, "No space left on device"},
        {"in.wav", path("nowhere/out.wav"), RLIM_INFINITY, "No such file or directory"},
        {"in.wav", path("folder"), RLIM_INFINITY, "Is a directory"},
        // The limit is met in the middle, while the last is written, and while a coder is flushed.
        {"in.wav", path("out.wav"), 100000, "File too large"},
        {"short.wav", path("out.wav"), 300, "File too large"},
        {"short.wav", path("out.flac"), 300, "File too large"},
        {"short.wav", path("out.ogg"), 4000, "File too large"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.input + (" to " + row.output));
        expectFailure(run({path(row.input), row.output}, limitTo(row.limit)), 1, row.message);
        EXPECT_EQ(folder(), before);
        for (const char* const name : {"out.wav", "out.flac", "out.ogg"}) EXPECT_EQ(contents(path(name)), text);
    }
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(EqualizeCommand, RemovesItsTemporaryFileWhenASignalEndsIt) {
    writeSound(path("sound.wav"), noise(44100, 1, 100));
    const std::string sound = contents(path("sound.wav"));
    writeText(path("out.wav"), "what was there");
    ASSERT_EQ(mkfifo(path("pipe.wav").c_str(), 0600), 0);
    const auto before = folder();
    for (const int signal : {SIGTERM, SIGINT}) {
        const pid_t child = start({path("pipe.wav"), path("out.wav")});
        // The command waits for the rest of the sound, which does not come.
        const int pipe = open(path("pipe.wav").c_str(), O_WRONLY | O_CLOEXEC);
        ASSERT_EQ(write(pipe, sound.data(), sound.size() - 40), static_cast<ssize_t>(sound.size() - 40));
        for (int tries = 0; tries < 1000 && folder() == before; ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_EQ(folder().size(), before.size() + 1);
        kill(child, signal);
        EXPECT_EQ(finish(child).signal, signal);
        close(pipe);
        EXPECT_EQ(folder(), before);
        EXPECT_EQ(contents(path("out.wav")), "what was there");
    }
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(EqualizeCommand, NeedsNoMoreMemoryForALongFile) {
    const auto memoryFor = [&](std::size_t seconds) {
        writeSound(path("in.wav"), noise(44100, 2, seconds * 44100, 0.5F), SF_FORMAT_WAV | SF_FORMAT_PCM_16);
        const Outcome outcome = run({path("in.wav"), path("out.wav"), "--band", "2:gain=2"});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        return outcome.mostKilobytes;
    };
    const long forShort = memoryFor(6);
    EXPECT_LT(memoryFor(60), forShort + 2048);
}
#endif

TEST_F(EqualizeCommand, RefusesBadUsageAndTellsWhatWouldBeRight) {
    writeSound(path("48000.wav"), noise(48000, 1, 100));
    writeSound(path("32000.wav"), noise(32000, 1, 100));
    const std::string in = path("48000.wav");
    const std::string out = path("out.wav");
    struct Row {
        Arguments arguments;
        const char* message;
    };
    const Row rows[] = {
        {{}, "INPUT"},
        {{in}, "OUTPUT is missing"},
        {{in, out, "third"}, "third"},
        {{in, out, "--unknown"}, "--unknown"},
        {{in, out, "--volume"}, "--volume"},
        {{in, out, "--volume", "12.5"}, "-12 to 12 dB"},
        {{in, out, "--volume", ""}, "-12 to 12 dB"},
        {{in, out, "--volume", "nan"}, "-12 to 12 dB"},
        {{in, out, "--volume", "3dB"}, "-12 to 12 dB"},
        {{in, out, "--band", "5:gain=1"}, "1 to 4"},
        {{in, out, "--band", "1"}, "N:freq=HZ,gain=DB,q=Q"},
        {{in, out, "--band", "1:"}, "freq=HZ, gain=DB and q=Q"},
        {{in, out, "--band", "1:gain"}, "freq=HZ, gain=DB and q=Q"},
        {{in, out, "--band", "1:gain=1,width=2"}, "freq=HZ, gain=DB and q=Q"},
        {{in, out, "--band", "1:gain=-10.1"}, "-10 to 10 dB"},
        {{in, out, "--band", "1:q=0.5"}, "1 to 10"},
        {{in, out, "--band", "1:freq=21.76"}, "21.77 to 21768.70 Hz"},
        {{in, out, "--band", "1:freq=21768.8"}, "21.77 to 21768.70 Hz"},
        {{in, out, "--band", "1:gain=1"}, "21.77 to 21768.70 Hz"},
        {{path("32000.wav"), out, "--band", "4:gain=1"}, "14.52 to 14512.47 Hz"},
        {{in, out, "--band", "1:freq=19.9", "--no-rate-correction"}, "20 to 20000 Hz"},
        {{in, out, "--set", "-1=0"}, "0 to 12"},
        {{in, out, "--set", "13=0"}, "0 to 12"},
        {{in, out, "--set", "1=1.01"}, "0 to 1"},
        {{in, out, "--set", "1"}, "INDEX=P"},
        {{in, out, "--block", "0"}, "1 to 1000000"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.arguments));
        expectFailure(run(row.arguments), 2, row.message);
        EXPECT_FALSE(std::filesystem::exists(out));
    }
    EXPECT_EQ(run({in, out, "--band", "1:freq=21.77", "--band", "2:freq=21768.7"}).exitCode, 0);
    EXPECT_EQ(run({"--help"}).exitCode, 0);
}

TEST_F(EqualizeCommand, ReadsThePresetThatItWrites) {
    writeSound(path("in.wav"), noise(48000, 1, 6000));
    const auto direct = equalized({"--volume", "-1.25", "--band", "2:freq=440.5,gain=-6.5,q=1.7", "--set", "5=0.3",
                                   "--save-preset", path("my preset")});
    EXPECT_EQ(equalized({"--preset", path("my preset")}), direct);

    // Whatever the order, the command line overrides it.
    writeText(path("my preset"), "volume=9 # loud\r\n\r\n  band1.gain =\t3\nband1.freq = 20\n");
    EXPECT_EQ(equalized({"--volume", "0", "--band", "1:gain=0,freq=500", "--preset", path("my preset")}),
              readSound(path("in.wav")).samples);
}

TEST_F(EqualizeCommand, NamesTheLineOfABadPreset) {
    writeSound(path("in.wav"), noise(48000, 1, 100));
    const std::map<std::string, std::string> rows = {
        {"volume", "name = value"},       {"volume = 13", "-12 to 12 dB"},       {"volume = loud", "-12 to 12 dB"},
        {"band5.gain = 1", "band5.gain"}, {"band1.width = 1", "band1.width"},    {"parameter13 = 0", "parameter13"},
        {"parameter1 = 2", "0 to 1"},     {"band2.freq = 21", "21.77 to 21768"}, {"band1.gain = 1", "21.77 to 21768"},
    };
    for (const auto& [line, message] : rows) {
        writeText(path("preset"), "# A comment.\n\n" + line + "\n");
        const Outcome outcome = run({"--preset", path("preset"), path("in.wav"), path("out.wav")});
        expectFailure(outcome, 1, path("preset") + ":3: ");
        expectFailure(outcome, 1, message);
    }
    expectFailure(run({"--preset", path("missing"), "--list"}), 1, "No such file");
}

TEST_F(EqualizeCommand, ListsParametersRangesAndValues) {
    const Outcome outcome = run({"--list", "--band", "2:freq=100,gain=-5,q=10"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    std::istringstream words(outcome.out);
    std::string table;
    for (std::string word; words >> word;) table += word + " ";
    for (const char* const row :
         {" 0 volume Volume -12 to 12 dB 0.500000 0.00 dB ",
          " 1 band1.freq Frequency(1) 20 to 20000 Hz 1.000000 20.00 Hz ",
          " 2 band2.freq Frequency(2) 20 to 20000 Hz 0.767010 100.00 Hz ",
          " 6 band2.gain Gain(2) -10 to 10 dB 0.750000 -5.00 dB ", " 10 band2.q Q(2) 1 to 10 0.000000 10.00 ",
          " 12 band4.q Q(4) 1 to 10 0.555556 5.00 "})
        EXPECT_NE(table.find(row), std::string::npos) << row << "\n" << outcome.out;

    const auto toAFullDevice = [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); };
    expectFailure(run({"--list"}, toAFullDevice), 1, "No space left on device");
}

TEST_F(EqualizeCommand, TakesTheLibraryThatIsNamedOrElseBesideItselfOrElseWhereItIsInstalled) {
    std::filesystem::create_directories(path("bin"));
    std::filesystem::create_directories(path("lib/vst"));
    const std::string beside = path("bin/Parametric Equalizer.so");
    const std::string installed = path("lib/vst/Parametric Equalizer.so");
    moveProgramTo(path("bin/equalize"));
    for (const std::string& place : {beside, installed}) expectFailure(run({"--list"}), 1, place);

    std::filesystem::copy_file(EQ_LIBRARY_PATH, installed);
    EXPECT_EQ(run({"--list"}).exitCode, 0);

    // Also through a link in another folder. The one beside the program comes first.
    std::filesystem::create_symlink(path("bin/equalize"), path("link"));
    writeText(beside, "not a library");
    const auto throughTheLink = [&] { execl(path("link").c_str(), "equalize", "--list", nullptr); };
    expectFailure(run({}, throughTheLink), 1, beside);

    const auto inItsFolder = [&] { std::filesystem::current_path(path("lib/vst")); };
    EXPECT_EQ(run({"--plugin", "Parametric Equalizer.so", "--list"}, inItsFolder).exitCode, 0);
}

struct Point {
    double x;
    double y;
};

TEST_F(EqualizeCommand, DrawsTheMeasuredResponse) {
    writeSound(path("96000.wav"), noise(96000, 1, 10));
    for (const Arguments& files : {Arguments{}, Arguments{path("96000.wav"), path("out.wav")}}) {
        Arguments arguments = {"--plot", path("plot.svg"), "--band", "2:freq=400,gain=8,q=4", "--volume", "-2"};
        arguments.insert(arguments.end(), files.begin(), files.end());
        const Outcome outcome = run(arguments);
        ASSERT_EQ(outcome.exitCode, 0) << outcome.err;

        // What a reader measures: pixels against the axes' labels.
        const std::string svg = contents(path("plot.svg"));
        const auto attribute = [&svg](const std::string& name, std::size_t at) {
            const std::size_t begin = svg.find(" " + name + "=\"", at) + name.size() + 3;
            return svg.substr(begin, svg.find('"', begin) - begin);
        };
        std::map<std::string, Point> labels;
        for (std::size_t at = svg.find("<text "); at != std::string::npos; at = svg.find("<text ", at + 1)) {
            const std::size_t begin = svg.find('>', at) + 1;
            const std::string label = svg.substr(begin, svg.find('<', begin) - begin);
            labels[label] = {std::stod(attribute("x", at)), std::stod(attribute("y", at))};
        }
        for (const char* const label :
             {"20", "20k", "Band 2", "400 Hz", "+8.0 dB", "Q 4.0", "All bands, volume \u22122.0 dB"})
            EXPECT_EQ(labels.count(label), 1U) << label;
        std::vector<Point> peaks;
        std::set<std::string> dashes;
        for (std::size_t at = svg.find("<polyline "); at != std::string::npos; at = svg.find("<polyline ", at + 1)) {
            dashes.insert(attribute("stroke-dasharray", at));
            std::istringstream points(attribute("points", at));
            Point point = {};
            Point& peak = peaks.emplace_back(Point{0.0, 1e9});
            for (char comma = 0; points >> point.x >> comma >> point.y;)
                if (point.y < peak.y) peak = point;
        }
        // A line for each band and the sum, told apart without colours.
        ASSERT_EQ(peaks.size(), 5U);
        EXPECT_EQ(dashes.size(), 5U);
        const double decade = labels["1k"].x - labels["100"].x;
        const double decibel = (labels["0"].y - labels["+6"].y) / 6.0;
        constexpr double HalfALetter = 5.0;
        EXPECT_NEAR(peaks[0].y, labels["0"].y, HalfALetter); // band 1 is flat
        for (const auto& [line, level] : {std::pair(1U, 8.0), std::pair(4U, 6.0)}) {
            EXPECT_NEAR(1000.0 * std::pow(10.0, (peaks[line].x - labels["1k"].x) / decade), 400.0, 4.0);
            EXPECT_NEAR((peaks[0].y - peaks[line].y) / decibel, level, 0.05);
        }
    }
}

TEST_F(EqualizeCommand, ShowsItsProgressOnATerminalOnly) {
    writeSound(path("in.wav"), noise(44100, 1, 1000));
    const PseudoTerminal terminal;
    // Held open, so that what the command writes stays readable.
    const int held = open(terminal.path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_EQ(run({path("in.wav"), path("out.wav")}, [&] { dup2(held, STDERR_FILENO); }).exitCode, 0);
    EXPECT_EQ(terminal.receive(2), "\r[");
    close(held);

    const Outcome piped = run({path("in.wav"), path("out.wav")});
    EXPECT_EQ(piped.err.find('\r'), std::string::npos) << piped.err;
    EXPECT_EQ(std::count(piped.err.begin(), piped.err.end(), '\n'), 1) << piped.err;
    EXPECT_EQ(run({path("in.wav"), path("out.wav"), "--quiet"}).err, "");
}

} // namespace
