#include "tests/support/EqualizeFixture.h"

#include <cmath>
#include <complex>
#include <cstring>
#include <map>
#include <numbers>
#include <random>
#include <set>
#include <sstream>
#include <thread>

#include <sys/stat.h>

namespace {

constexpr std::size_t Delay = 2048;

Sound noise(int rate, int channels, std::size_t frames, float level = 1.0F) {
    Sound sound{rate, channels, std::vector<float>(frames * static_cast<std::size_t>(channels))};
    std::mt19937 generator(1);
    std::uniform_real_distribution<float> distribution(-level, level);
    for (float& sample : sound.samples) sample = distribution(generator);
    return sound;
}

Sound impulse(int rate, std::size_t frames) {
    Sound sound{rate, 1, std::vector<float>(frames)};
    sound.samples[0] = 1.0F;
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

TEST_F(EqualizeCommand, GivesBackTheInputSampleForSampleWhenFlat) {
    struct Row {
        int rate;
        int channels;
        std::size_t frames;
        const char* block;
    };
    const Row rows[] = {
        {44100, 1, 0, "8192"},    {44100, 1, 1, "8192"},    {48000, 2, 1, "1"},       {96000, 2, 2047, "2048"},
        {44100, 3, 2048, "1000"}, {48000, 6, 2049, "4096"}, {96000, 1, 20000, "333"}, {44100, 2, 20000, "1000000"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.rate << " Hz, " << row.channels << " channels, " << row.frames
                                        << " frames, block " << row.block);
        const Sound input = noise(row.rate, row.channels, row.frames, 3.0F);
        writeSound(path("in.wav"), input);

        const Outcome aligned = run({path("in.wav"), path("out.wav"), "--block", row.block});
        EXPECT_EQ(aligned.exitCode, 0) << aligned.err;
        const SoundFile output = readSound(path("out.wav"));
        EXPECT_EQ(output.rate, row.rate);
        EXPECT_EQ(output.channels, row.channels);
        EXPECT_EQ(output.format, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
        EXPECT_EQ(output.samples, input.samples);

        EXPECT_EQ(run({path("in.wav"), path("out.wav"), "--block", row.block, "--keep-latency"}).exitCode, 0);
        Sound delayed = input;
        delayed.samples.insert(delayed.samples.begin(), Delay * static_cast<std::size_t>(row.channels), 0.0F);
        EXPECT_EQ(readSound(path("out.wav")).samples, delayed.samples);
    }
}

TEST_F(EqualizeCommand, AppliesTheSettingsFromTheFirstSampleOnInEveryChannel) {
    const Sound input = noise(44100, 3, 5000);
    writeSound(path("in.wav"), input);
    std::vector<float> expected;
    const auto gain = static_cast<float>(std::pow(10.0, 6.0 * 0.05));
    for (const float sample : input.samples) expected.push_back(gain * sample);

    ASSERT_EQ(run({path("in.wav"), path("out.wav"), "--volume", "6"}).exitCode, 0);
    EXPECT_EQ(readSound(path("out.wav")).samples, expected);
}

TEST_F(EqualizeCommand, GivesTheSameSamplesWhateverTheBlock) {
    writeSound(path("in.wav"), noise(44100, 2, 9000));
    std::vector<float> first;
    for (const char* const block : {"8192", "1", "2047", "100000"}) {
        SCOPED_TRACE(block);
        ASSERT_EQ(run({"--block", block, "--band", "1:freq=300,gain=-7,q=3", path("in.wav"), path("out.wav")}).exitCode,
                  0);
        const SoundFile output = readSound(path("out.wav"));
        if (first.empty()) first = output.samples;
        EXPECT_EQ(output.samples, first);
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
    constexpr const char* From96000 = "96000 Hz file: frequencies are scaled by 44100/96000";
    const Row rows[] = {
        {44100, {"--band", "1:freq=1000,gain=10,q=2"}, 0, {{1000, 10, 2}}, ""},
        {44100, {"--band", "1:gain=4"}, 0, {{20, 4, 5}}, ""},
        {48000, {"--band", "3:freq=1000,gain=-10,q=10"}, 0, {{1000, -10, 10}}, From48000},
        {48000, {"--band", "4:gain=-3"}, 0, {{20000, -3, 5}}, From48000},
        {48000, {"--band", "1:freq=21768.7,gain=6,q=1"}, 0, {{21768.7, 6, 1}}, From48000},
        {96000, {"--volume", "-3.5", "--band", "2:freq=150,gain=5,q=1.5"}, -3.5, {{150, 5, 1.5}}, From96000},
        {96000,
         {"--band", "1:freq=60,gain=3,q=1", "--band", "4:freq=30000,gain=-6,q=2", "--band", "2:freq=999,gain=-2,q=1",
          "--band", "2:freq=700,q=4"},
         0,
         {{60, 3, 1}, {30000, -6, 2}, {700, -2, 4}},
         From96000},
        {96000,
         {"--no-rate-correction", "--band", "1:freq=1000,gain=8,q=3"},
         0,
         {{1000 * 96000 / 44100.0, 8, 3}},
         "not corrected"},
        // Normalised values are for the effect as it stands, and override the others.
        {48000,
         {"--set", "2=0.5", "--set", "6=0", "--set", "10=1", "--set", "0=0.75", "--volume", "3"},
         -6,
         {{20 * std::pow(10, 1.5) * 48000 / 44100, 10, 1}},
         ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.rate << " Hz " << testing::PrintToString(row.options));
        writeSound(path("in.wav"), impulse(row.rate, 1 << 17));
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

TEST_F(EqualizeCommand, PassesOnNumbersThatAreNoneAndGoesOn) {
    Sound input = noise(44100, 1, 6000);
    input.samples[100] = std::numeric_limits<float>::quiet_NaN();
    input.samples[3000] = std::numeric_limits<float>::infinity();
    writeSound(path("in.wav"), input);
    ASSERT_EQ(run({"--volume", "-6", path("in.wav"), path("out.wav")}).exitCode, 0);
    const SoundFile output = readSound(path("out.wav"));
    ASSERT_EQ(output.samples.size(), input.samples.size());
    EXPECT_TRUE(std::isfinite(output.samples[99]));
    EXPECT_TRUE(std::isnan(output.samples[100]));
    // Whole numbers have no place for them.
    ASSERT_EQ(run({path("in.wav"), path("out.flac")}).exitCode, 0);
    EXPECT_EQ(readSound(path("out.flac")).samples[100], 0.0F);
}

TEST_F(EqualizeCommand, KeepsTheFormatUnlessTheExtensionNamesAnother) {
    struct Row {
        int input;
        const char* place;
        int output;
        bool exact;
    };
    const Row rows[] = {
        {SF_FORMAT_WAV | SF_FORMAT_PCM_16, "o.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, true},
        {SF_FORMAT_WAV | SF_FORMAT_PCM_16, "o.unknown", SF_FORMAT_WAV | SF_FORMAT_PCM_16, true},
        {SF_FORMAT_WAV | SF_FORMAT_PCM_U8, "o", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, true},
        {SF_FORMAT_WAV | SF_FORMAT_PCM_24, "o.AIF", SF_FORMAT_AIFF | SF_FORMAT_PCM_24, true},
        {SF_FORMAT_AIFF | SF_FORMAT_PCM_16, "o.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, true},
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
    writeSound(path("in.wav"), {44100, 1, {1.0F, -1.0F, 1.5F, 0.6F * Step, 0.4F * Step, -0.6F * Step, -0.4F * Step}});
    const Outcome outcome = run({path("in.wav"), path("out.flac")});
    EXPECT_NE(outcome.err.find("2 samples were clipped to full scale; the highest is 3.52 dB"), std::string::npos)
        << outcome.err;
    EXPECT_EQ(readSound(path("out.flac")).samples,
              (std::vector<float>{1.0F - Step, -1.0F, 1.0F - Step, Step, 0.0F, -Step, 0.0F}));
    EXPECT_EQ(run({path("in.wav"), path("out.wav")}).err.find("clipped"), std::string::npos);
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
    const Sound sound = noise(44100, 2, 60000, 0.5F);
    const auto cutOff = [&](const char* name, int format, double share, const char* title = nullptr) {
        writeSound(path(name), sound, format, title);
        const auto size = static_cast<double>(std::filesystem::file_size(path(name)));
        std::filesystem::resize_file(path(name), static_cast<std::uintmax_t>(size * share));
    };
    cutOff("cut.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0.5);
    cutOff("cut by a frame.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1.0 - 4.0 / 240044.0);
    cutOff("cut.rf64", SF_FORMAT_RF64 | SF_FORMAT_PCM_16, 0.5);
    cutOff("cut.w64", SF_FORMAT_W64 | SF_FORMAT_PCM_16, 0.5);
    // A chunk of odd length stands in front of the sound.
    cutOff("cut.aiff", SF_FORMAT_AIFF | SF_FORMAT_FLOAT, 0.7, "odd");
    cutOff("cut.au", SF_FORMAT_AU | SF_FORMAT_PCM_16, 0.7);
    cutOff("cut.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 0.7);
    cutOff("cut in the header.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0.0001);
    cutOff("empty.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0.0);
    writeText(path("text.wav"), "This is not sound, whatever its name says.\n");
    writeText(path("out.wav"), "what was there");
    const auto before = folder();

    const std::map<std::string, std::string> rows = {
        {"missing.wav", "No such file"},
        {".", "Is a directory"},
        {"text.wav", "not a readable audio file"},
        {"empty.wav", "not a readable audio file"},
        {"cut in the header.wav", "not a readable audio file"},
        {"cut.wav", "ends early: 119978 of 240000 bytes"},
        {"cut by a frame.wav", "ends early: 239996 of 240000 bytes"},
        {"cut.rf64", "ends early"},
        {"cut.w64", "ends early"},
        {"cut.aiff", "ends early"},
        {"cut.au", "ends early"},
        {"cut.flac", "of 60000 frames could be read"},
    };
    for (const auto& [name, message] : rows) {
        const Outcome outcome = run({path(name), path("out.wav")});
        EXPECT_EQ(outcome.exitCode, 1) << name;
        EXPECT_NE(outcome.err.find(message), std::string::npos) << name << ": " << outcome.err;
        EXPECT_EQ(outcome.err.rfind("equalize: ", 0), 0U) << outcome.err;
        EXPECT_EQ(folder(), before) << name;
        EXPECT_EQ(contents(path("out.wav")), "what was there") << name;
    }
}

TEST_F(EqualizeCommand, TakesAHeaderThatLeavesItsLengthOpen) {
    const Sound input = noise(44100, 1, 3000);
    writeSound(path("in.wav"), input, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    std::string bytes = contents(path("in.wav"));
    for (const std::size_t sizeField : {4, 40}) bytes.replace(sizeField, 4, 4, '\xFF');
    const std::vector<float> expected = readSound(path("in.wav")).samples;
    writeText(path("in.wav"), bytes);
    const Outcome outcome = run({path("in.wav"), path("out.wav")});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(readSound(path("out.wav")).samples, expected);
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
        {"short.wav", "/dev/full", RLIM_INFINITY, "No space left on device"},
        {"in.wav", path("nowhere/out.wav"), RLIM_INFINITY, "No such file or directory"},
        {"in.wav", path("in.wav/out.wav"), RLIM_INFINITY, "Not a directory"},
        {"in.wav", path("folder"), RLIM_INFINITY, "Is a directory"},
        // The limit is met in the middle, while the last is written, and while a coder is flushed.
        {"in.wav", path("out.wav"), 100000, "File too large"},
        {"short.wav", path("out.wav"), 300, "File too large"},
        {"in.wav", path("out.flac"), 1024, "File too large"},
        {"short.wav", path("out.flac"), 300, "File too large"},
        {"short.wav", path("out.ogg"), 4000, "File too large"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.input + (" to " + row.output));
        const Outcome outcome = run({path(row.input), row.output}, limitTo(row.limit));
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_NE(outcome.err.find(row.message), std::string::npos) << outcome.err;
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

TEST_F(EqualizeCommand, NeedsNoMoreMemoryForALongFile) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    constexpr int LongSeconds = 60;
    constexpr bool ComparesMemory = false;
#else
    constexpr int LongSeconds = 600;
    constexpr bool ComparesMemory = true;
#endif
    const auto memoryFor = [&](int seconds) {
        SF_INFO info = {};
        info.samplerate = 44100;
        info.channels = 2;
        info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
        SNDFILE* const file = sf_open(path("in.wav").c_str(), SFM_WRITE, &info);
        const std::vector<float> second = noise(44100, 2, 44100, 0.5F).samples;
        for (int i = 0; i < seconds; ++i) sf_write_float(file, second.data(), static_cast<sf_count_t>(second.size()));
        sf_close(file);
        const Outcome outcome = run({path("in.wav"), path("out.wav"), "--band", "2:gain=2"});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        EXPECT_EQ(std::filesystem::file_size(path("out.wav")), std::filesystem::file_size(path("in.wav")));
        return outcome.mostKilobytes;
    };
    const long forShort = memoryFor(LongSeconds / 10);
    const long forLong = memoryFor(LongSeconds);
    if (ComparesMemory) {
        EXPECT_LT(forLong, forShort + 2048);
    }
}

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
        {{in, out, "--volume", "nan"}, "-12 to 12 dB"},
        {{in, out, "--volume", ""}, "-12 to 12 dB"},
        {{in, out, "--volume", "3dB"}, "-12 to 12 dB"},
        {{in, out, "--band", "0:gain=1"}, "1 to 4"},
        {{in, out, "--band", "5:gain=1"}, "1 to 4"},
        {{in, out, "--band", "1"}, "N:freq=HZ,gain=DB,q=Q"},
        {{in, out, "--band", "1:"}, "freq=HZ, gain=DB and q=Q"},
        {{in, out, "--band", "1:gain"}, "freq=HZ, gain=DB and q=Q"},
        {{in, out, "--band", "1:gain=1,width=2"}, "freq=HZ, gain=DB and q=Q"},
        {{in, out, "--band", "1:gain=-10.1"}, "-10 to 10 dB"},
        {{in, out, "--band", "1:q=0.5"}, "1 to 10"},
        {{in, out, "--band", "1:freq=-100"}, "20 to 20000 Hz"},
        {{in, out, "--band", "1:freq=21.76"}, "21.77 to 21768.70 Hz"},
        {{in, out, "--band", "1:freq=21768.8"}, "21.77 to 21768.70 Hz"},
        {{in, out, "--band", "1:gain=1"}, "21.77 to 21768.70 Hz"},
        {{path("32000.wav"), out, "--band", "4:gain=1"}, "14.52 to 14512.47 Hz"},
        {{in, out, "--band", "1:freq=19.9", "--no-rate-correction"}, "20 to 20000 Hz"},
        {{in, out, "--set", "13=0"}, "0 to 12"},
        {{in, out, "--set", "-1=0"}, "0 to 12"},
        {{in, out, "--set", "1=1.01"}, "0 to 1"},
        {{in, out, "--set", "1"}, "INDEX=P"},
        {{in, out, "--block", "0"}, "1 to 1000000"},
        {{in, out, "--block", "1000001"}, "1 to 1000000"},
    };
    for (const Row& row : rows) {
        const Outcome outcome = run(row.arguments);
        EXPECT_EQ(outcome.exitCode, 2) << testing::PrintToString(row.arguments);
        EXPECT_EQ(outcome.err.rfind("equalize: ", 0), 0U) << outcome.err;
        EXPECT_NE(outcome.err.find(row.message), std::string::npos)
            << testing::PrintToString(row.arguments) << ": " << outcome.err;
        EXPECT_FALSE(std::filesystem::exists(out));
    }
    EXPECT_EQ(run({in, out, "--band", "1:freq=21.77", "--band", "2:freq=21768.7"}).exitCode, 0);
}

TEST_F(EqualizeCommand, ReadsThePresetThatItWrites) {
    writeSound(path("in.wav"), noise(48000, 1, 6000));
    const Arguments settings = {"--volume", "-1.25", "--band", "2:freq=440.5,gain=-6.5,q=1.7", "--set", "5=0.3"};
    Arguments direct = settings;
    direct.insert(direct.end(), {path("in.wav"), path("direct.wav")});
    ASSERT_EQ(run(direct).exitCode, 0);
    Arguments save = settings;
    save.insert(save.end(), {"--save-preset", path("my preset")});
    ASSERT_EQ(run(save).exitCode, 0);

    const Outcome outcome = run({"--preset", path("my preset"), path("in.wav"), path("preset.wav")});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(readSound(path("preset.wav")).samples, readSound(path("direct.wav")).samples);

    // Whatever the order, the command line overrides it.
    writeText(path("my preset"), "volume=9 # loud\r\n\r\n  band1.gain =\t3\nband1.freq = 20\n");
    ASSERT_EQ(run({"--volume", "0", "--band", "1:gain=0,freq=500", "--preset", path("my preset"), path("in.wav"),
                   path("flat.wav")})
                  .exitCode,
              0);
    EXPECT_EQ(readSound(path("flat.wav")).samples, readSound(path("in.wav")).samples);
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
        EXPECT_EQ(outcome.exitCode, 1) << line;
        EXPECT_NE(outcome.err.find(path("preset") + ":3: "), std::string::npos) << outcome.err;
        EXPECT_NE(outcome.err.find(message), std::string::npos) << outcome.err;
    }
    const Outcome missing = run({"--preset", path("missing"), "--list"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.err.find("No such file"), std::string::npos) << missing.err;
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

    const Outcome full = run({"--list"}, [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); });
    EXPECT_EQ(full.exitCode, 1);
    EXPECT_NE(full.err.find("No space left on device"), std::string::npos) << full.err;
}

TEST_F(EqualizeCommand, TakesTheLibraryThatIsNamed) {
    writeSound(path("in.wav"), noise(44100, 1, 100));
    std::filesystem::copy_file(EQ_LIBRARY_PATH, path("copy of it.so"));
    EXPECT_EQ(run({"--plugin", path("copy of it.so"), path("in.wav"), path("out.wav")}).exitCode, 0);
    const auto inTheFolder = [&] { std::filesystem::current_path(path("")); };
    EXPECT_EQ(run({"--plugin", "copy of it.so", "in.wav", "out.wav"}, inTheFolder).exitCode, 0);
    writeText(path("text.so"), "not a library");
    for (const char* const name : {"missing.so", "text.so"}) {
        const Outcome outcome = run({"--plugin", path(name), path("in.wav"), path("out.wav")});
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_NE(outcome.err.find(name), std::string::npos) << outcome.err;
    }
}

TEST_F(EqualizeCommand, FindsTheLibraryBesideItselfOrElseWhereItIsInstalled) {
    std::filesystem::create_directories(path("bin"));
    std::filesystem::create_directories(path("lib/vst"));
    const std::string beside = path("bin/Parametric Equalizer.so");
    const std::string installed = path("lib/vst/Parametric Equalizer.so");
    moveProgramTo(path("bin/equalize"));

    const Outcome missing = run({"--list"});
    EXPECT_EQ(missing.exitCode, 1);
    for (const std::string& place : {beside, installed})
        EXPECT_NE(missing.err.find(place), std::string::npos) << missing.err;

    std::filesystem::copy_file(EQ_LIBRARY_PATH, installed);
    const Outcome there = run({"--list"});
    EXPECT_EQ(there.exitCode, 0) << there.err;

    // Also through a link in another folder. The one beside the program comes first.
    std::filesystem::create_symlink(path("bin/equalize"), path("link"));
    writeText(beside, "not a library");
    const Outcome first = run({"--list"}, [&] { execl(path("link").c_str(), "equalize", "--list", nullptr); });
    EXPECT_EQ(first.exitCode, 1);
    EXPECT_NE(first.err.find(beside), std::string::npos) << first.err;
}

/// What a reader of the picture measures: pixels against the axes' labels. Band 1 is to be flat.
class Picture {
public:
    struct Point {
        double x;
        double y;
    };
    using Curve = std::vector<Point>;

    explicit Picture(const std::string& svg) {
        for (std::size_t at = svg.find("<text "); at != std::string::npos; at = svg.find("<text ", at + 1))
            labels[between(svg, ">", "<", at)] = {std::stod(between(svg, " x=\"", "\"", at)),
                                                  std::stod(between(svg, " y=\"", "\"", at))};
        for (std::size_t at = svg.find("<polyline "); at != std::string::npos; at = svg.find("<polyline ", at + 1)) {
            dashes.insert(between(svg, "stroke-dasharray=\"", "\"", at));
            std::istringstream points(between(svg, "points=\"", "\"", at));
            Curve& curve = curves.emplace_back();
            Point point = {};
            for (char comma = 0; points >> point.x >> comma >> point.y;) curve.push_back(point);
        }
    }

    /// The frequency and the level of the highest point of a curve.
    [[nodiscard]] std::pair<double, double> peakOf(const Curve& curve) const {
        const Point peak =
            *std::min_element(curve.begin(), curve.end(), [](const Point& a, const Point& b) { return a.y < b.y; });
        const double decade = labels.at("1k").x - labels.at("100").x;
        const double decibel = (labels.at("0").y - labels.at("+6").y) / 6.0;
        return {1000.0 * std::pow(10.0, (peak.x - labels.at("1k").x) / decade),
                (curves.front().front().y - peak.y) / decibel};
    }

    std::map<std::string, Point> labels;
    std::set<std::string> dashes;
    std::vector<Curve> curves;

private:
    static std::string between(const std::string& text, const std::string& before, const char* after, std::size_t at) {
        const std::size_t begin = text.find(before, at) + before.size();
        return text.substr(begin, text.find(after, begin) - begin);
    }
};

TEST_F(EqualizeCommand, DrawsTheMeasuredResponse) {
    writeSound(path("96000.wav"), noise(96000, 1, 10));
    const Arguments settings = {"--plot", path("plot.svg"), "--band", "2:freq=400,gain=8,q=4", "--volume", "-2"};
    for (const bool withFile : {false, true}) {
        SCOPED_TRACE(withFile);
        Arguments arguments = settings;
        if (withFile) arguments.insert(arguments.end(), {path("96000.wav"), path("out.wav")});
        const Outcome outcome = run(arguments);
        ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
        const std::string svg = contents(path("plot.svg"));
        const Picture picture(svg);
        for (const char* const label : {"20", "50", "100", "200", "500", "1k", "2k", "5k", "10k", "20k", "Band 2",
                                        "400 Hz", "+8.0 dB", "Q 4.0", "All bands, volume \u22122.0 dB"})
            EXPECT_EQ(picture.labels.count(label), 1U) << label;
        for (const char* const word : {"<script", "href", "font-face", "url("})
            EXPECT_EQ(svg.find(word), std::string::npos) << word;

        // A line for each band and the sum, told apart without colours.
        ASSERT_EQ(picture.curves.size(), 5U);
        EXPECT_EQ(picture.dashes.size(), 5U);
        const Picture::Curve& flat = picture.curves[0];
        for (const Picture::Point& point : flat) EXPECT_NEAR(point.y, flat.front().y, 0.01);
        constexpr double HalfALetter = 5.0;
        EXPECT_NEAR(flat.front().y, picture.labels.at("0").y, HalfALetter);
        const auto band = picture.peakOf(picture.curves[1]);
        EXPECT_NEAR(band.first, 400.0, 4.0);
        EXPECT_NEAR(band.second, 8.0, 0.05);
        const auto sum = picture.peakOf(picture.curves[4]);
        EXPECT_NEAR(sum.first, 400.0, 4.0);
        EXPECT_NEAR(sum.second, 6.0, 0.05);
    }
}

TEST_F(EqualizeCommand, ShowsItsProgressOnATerminalOnly) {
    writeSound(path("in.wav"), noise(44100, 1, 1000));
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(terminal, 0);
    ASSERT_EQ(grantpt(terminal), 0);
    ASSERT_EQ(unlockpt(terminal), 0);
    const std::string name = ptsname(terminal);
    // Held open, so that what the command writes stays readable.
    const int held = open(name.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_EQ(run({path("in.wav"), path("out.wav")}, [&] { dup2(held, STDERR_FILENO); }).exitCode, 0);
    std::array<char, 4096> shown = {};
    EXPECT_GT(read(terminal, shown.data(), shown.size() - 1), 0);
    EXPECT_NE(std::strstr(shown.data(), "\r["), nullptr) << shown.data();
    close(held);
    close(terminal);

    const Outcome piped = run({path("in.wav"), path("out.wav")});
    EXPECT_EQ(piped.err.find('\r'), std::string::npos) << piped.err;
    EXPECT_EQ(std::count(piped.err.begin(), piped.err.end(), '\n'), 1) << piped.err;
    EXPECT_EQ(run({path("in.wav"), path("out.wav"), "--quiet"}).err, "");
}

TEST_F(EqualizeCommand, HelpsOnRequest) {
    const Outcome outcome = run({"--help"});
    EXPECT_EQ(outcome.exitCode, 0);
    for (const char* const option :
         {"--volume", "--band", "--set", "--preset", "--save-preset", "--block", "--keep-latency",
          "--no-rate-correction", "--plugin", "--plot", "--list", "--quiet"})
        EXPECT_NE(outcome.out.find(option), std::string::npos) << option;
}

} // namespace
