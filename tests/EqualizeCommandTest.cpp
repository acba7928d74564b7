#include "tests/support/CommandTest.h"
#include "tests/support/PseudoTerminal.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <initializer_list>
#include <map>
#include <numbers>
#include <random>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sndfile.h>
#include <sys/stat.h>

namespace {

constexpr int Pcm16 = SF_FORMAT_WAV | SF_FORMAT_PCM_16;

/// Sound as it is in a file: interleaved samples.
struct Sound {
    int rate;
    int channels;
    std::vector<float> samples;
    int format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    std::string title = "A title";
};

Sound noise(int rate, int channels, std::size_t frames, int format = SF_FORMAT_WAV | SF_FORMAT_FLOAT) {
    Sound sound{rate, channels, std::vector<float>(frames * static_cast<std::size_t>(channels)), format};
    std::mt19937 generator(1);
    std::uniform_real_distribution<float> distribution(-0.9F, 0.9F);
    for (float& sample : sound.samples) sample = distribution(generator);
    return sound;
}

double decibelsAt(const Sound& sound, double frequency) {
    const std::complex<double> step = std::polar(1.0, -2.0 * std::numbers::pi * frequency / sound.rate);
    std::complex<double> sum = 0.0;
    for (auto sample = sound.samples.rbegin(); sample != sound.samples.rend(); ++sample)
        sum = sum * step + static_cast<double>(*sample);
    return 20.0 * std::log10(std::abs(sum));
}

class EqualizeCommand : public CommandTest {
protected:
    EqualizeCommand() : CommandTest(EQ_EQUALIZE_PATH) {}

    /// A run from "in.wav" to "out.wav", which succeeds. Gives what it says.
    std::string equalize(const std::string& options) const {
        const Outcome outcome = run("in.wav out.wav " + options);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        return outcome.err;
    }
    [[nodiscard]] std::vector<float> equalized(const std::string& options) const {
        equalize(options);
        return readSound("out.wav").samples;
    }
    void expectFailure(int exitCode, const std::string& arguments, const std::string& message,
                       const std::string& before = "") const {
        const Outcome outcome = run(arguments, before);
        EXPECT_EQ(outcome.exitCode, exitCode) << arguments;
        EXPECT_EQ(outcome.err.rfind("equalize: ", 0), 0U) << outcome.err;
        EXPECT_NE(outcome.err.find(message), std::string::npos) << message << "\n" << outcome.err;
    }

    void writeSound(const std::string& name, const Sound& sound) const {
        SF_INFO info = {};
        info.samplerate = sound.rate;
        info.channels = sound.channels;
        info.format = sound.format;
        SNDFILE* const handle = sf_open(path(name).c_str(), SFM_WRITE, &info);
        ASSERT_NE(handle, nullptr) << sf_strerror(nullptr);
        sf_set_string(handle, SF_STR_TITLE, sound.title.c_str());
        sf_write_float(handle, sound.samples.data(), static_cast<sf_count_t>(sound.samples.size()));
        sf_close(handle);
    }
    [[nodiscard]] Sound readSound(const std::string& name) const {
        SF_INFO info = {};
        SNDFILE* const handle = sf_open(path(name).c_str(), SFM_READ, &info);
        if (!handle) throw std::runtime_error(name + ": " + sf_strerror(nullptr));
        const char* const title = sf_get_string(handle, SF_STR_TITLE);
        Sound sound{info.samplerate, info.channels, {}, info.format, title ? title : ""};
        sound.samples.resize(static_cast<std::size_t>(info.frames * info.channels));
        sf_read_float(handle, sound.samples.data(), info.frames * info.channels);
        sf_close(handle);
        return sound;
    }

    struct BadRun {
        std::string input;
        std::string output;
        const char* message;
        int format = 0;             ///< of sound that is made
        std::uintmax_t missing = 0; ///< bytes that are cut off
        const char* before = "";
    };
    void expectNothingLost(std::initializer_list<BadRun> runs) const {
        const std::string text(1000, 'x');
        const char* const outputs[] = {"out.wav", "out.flac", "out.ogg"};
        for (const char* const name : outputs) folder.write(name, text);
        for (const BadRun& bad : runs) {
            SCOPED_TRACE(bad.input + " to " + bad.output);
            if (bad.format != 0) {
                writeSound(bad.input, noise(44100, 2, 300, bad.format));
                const std::filesystem::path made = path(bad.input);
                std::filesystem::resize_file(made, std::filesystem::file_size(made) - bad.missing);
            }
            const auto before = names();
            expectFailure(1, bad.input + " " + bad.output, bad.message, bad.before);
            EXPECT_EQ(names(), before);
            for (const char* const name : outputs) EXPECT_EQ(contents(name), text);
        }
    }
};

TEST_F(EqualizeCommand, GivesBackTheInputAtTheVolumeFromTheFirstSampleOnWhateverTheBlock) {
    for (const auto& [channels, frames, block] : {std::tuple(1, 0U, "8192"), {2, 1U, "1"}, {3, 20000U, "1000"}}) {
        Sound sound = noise(96000, channels, frames);
        writeSound("in.wav", sound);
        const auto gain = static_cast<float>(std::pow(10.0, 0.3));
        for (float& sample : sound.samples) sample *= gain;
        const std::string options = std::string("--volume 6 --block ") + block;
        EXPECT_EQ(equalized(options), sound.samples) << options;
        const Sound output = readSound("out.wav");
        EXPECT_EQ(std::pair(output.rate, output.channels), std::pair(96000, channels));

        constexpr std::size_t Delay = 2048;
        sound.samples.insert(sound.samples.begin(), Delay * static_cast<std::size_t>(channels), 0.0F);
        EXPECT_EQ(equalized(options + " --keep-latency"), sound.samples) << options;
    }
}

TEST_F(EqualizeCommand, HasTheResponseThatWasAskedForAtEveryRate) {
    struct Row {
        int rate;
        const char* options;
        std::map<double, double> decibels; ///< at frequencies: at each peak, on its shoulder, and apart
        const char* note;                  ///< about the rate
    };
    const Row rows[] = {
        {96000,
         "--band 1:freq=60,gain=3,q=1 --band 2:freq=999,gain=-2,q=1 --band 2:freq=700,q=4",
         {{60, 2.999}, {100, 1.657}, {700, -1.968}, {800, -1.021}, {15000, 0}},
         "96000 Hz file: frequencies are scaled by 44100/96000"},
        {96000, "--no-rate-correction --band 1:gain=8", {{43.54, 8}, {50, 4.492}}, "not corrected"},
        // Normalised values are for the effect as it stands, and override the others.
        {48000, "--set 2=0.5 --set 6=0 --set 10=1 --set 0=0.75 --volume 3", {{688.4, 4}, {900, 3.006}}, ""},
        {44100, "--band 1:gain=4", {{20, 4}, {22, 2.531}, {1000, 0}}, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.options);
        Sound impulse{row.rate, 1, std::vector<float>(1 << 17)};
        impulse.samples[0] = 1.0F;
        writeSound("in.wav", impulse);
        const std::string notes = equalize(row.options);
        for (const auto& [frequency, decibels] : row.decibels)
            EXPECT_NEAR(decibelsAt(readSound("out.wav"), frequency), decibels, 0.01) << frequency << " Hz";
        EXPECT_NE(notes.find(row.note), std::string::npos) << notes;
        EXPECT_EQ(notes.find("frequencies") == std::string::npos, row.note == std::string()) << notes;
    }
}

TEST_F(EqualizeCommand, KeepsTheFormatUnlessTheExtensionNamesAnother) {
    const std::tuple<int, const char*, int, bool> rows[] = {
        {SF_FORMAT_WAV | SF_FORMAT_PCM_U8, "o.unknown", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, true},
        {SF_FORMAT_WAV | SF_FORMAT_PCM_24, "o.AIF", SF_FORMAT_AIFF | SF_FORMAT_PCM_24, true},
        {SF_FORMAT_WAV | SF_FORMAT_FLOAT, "o.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_24, false},
        {SF_FORMAT_WAV | SF_FORMAT_ULAW, "o.caf", SF_FORMAT_CAF | SF_FORMAT_ULAW, true},
        {Pcm16, "o.ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS, false},
        {SF_FORMAT_OGG | SF_FORMAT_VORBIS, "o.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_24, false},
    };
    for (const auto& [format, place, expected, isExact] : rows) {
        SCOPED_TRACE(place);
        writeSound("in", noise(44100, 2, 5000, format));
        EXPECT_EQ(run(std::string("in ") + place).exitCode, 0);
        const Sound input = readSound("in");
        const Sound output = readSound(place);
        EXPECT_EQ(output.format, expected) << std::hex << output.format;
        EXPECT_EQ(output.title, "A title");
        EXPECT_EQ(output.samples.size(), input.samples.size());
        EXPECT_TRUE(!isExact || output.samples == input.samples);
    }
}

TEST_F(EqualizeCommand, RoundsAndLimitsWhatGoesIntoWholeNumbersAndTellsOfIt) {
    constexpr float Step = 0x1p-23F;
    constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
    writeSound("in.wav", {44100, 1, {1.0F, -1.0F, 1.5F, 0.6F * Step, 0.4F * Step, -0.6F * Step, -0.4F * Step, NaN}});
    const std::string notes = run("in.wav out.flac").err;
    EXPECT_NE(notes.find("2 samples were clipped to full scale; the highest is 3.52 dB"), std::string::npos) << notes;
    EXPECT_EQ(readSound("out.flac").samples,
              (std::vector<float>{1.0F - Step, -1.0F, 1.0F - Step, Step, 0.0F, -Step, 0.0F, 0.0F}));
    EXPECT_EQ(equalize("").find("clipped"), std::string::npos);
    EXPECT_TRUE(std::isnan(readSound("out.wav").samples[7]));
}

TEST_F(EqualizeCommand, ReplacesItsOwnInputAndKeepsPermissionsAndLinks) {
    writeSound("sound.wav", noise(44100, 1, 3000));
    const float before = readSound("sound.wav").samples[7];
    std::filesystem::create_symlink("sound.wav", path("link.wav"));
    EXPECT_EQ(run("--volume -12 link.wav link.wav", "chmod 640 sound.wav;").exitCode, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(path("link.wav")));
    EXPECT_NEAR(readSound("sound.wav").samples[7], before * std::pow(10.0, -0.6), 1e-6);
    EXPECT_EQ(run("sound.wav fresh.wav", "umask 027;").exitCode, 0);
    for (const char* const name : {"sound.wav", "fresh.wav"})
        EXPECT_EQ(static_cast<int>(std::filesystem::status(path(name)).permissions()), 0640) << name;
    EXPECT_EQ(names(), (std::set<std::string>{"fresh.wav", "link.wav", "sound.wav"}));
}

TEST_F(EqualizeCommand, WritesACompleteFileIntoAPipeAndTakesAHeaderThatLeavesItsLengthOpen) {
    Sound sound = noise(44100, 1, 3000, Pcm16);
    sound.title.clear();
    writeSound("in.wav", sound);
    const std::vector<float> expected = readSound("in.wav").samples;
    std::string bytes = contents("in.wav");
    for (const std::size_t sizeField : {4, 40}) bytes.replace(sizeField, 4, 4, '\xFF');
    folder.write("in.wav", bytes);
    EXPECT_EQ(run("--quiet in.wav /dev/stdout | cat > out.wav").err, "");
    EXPECT_EQ(readSound("out.wav").samples, expected);
}

TEST_F(EqualizeCommand, LosesNothingAndLeavesNothingWhenInputOrOutputIsBad) {
    folder.write("text.wav", "This is not sound, whatever its name says.\n");
    expectNothingLost({
        {"missing.wav", "out.wav", "No such file"},
        {".", "out.wav", "Is a directory"},
        {"text.wav", "out.wav", "not a readable audio file"},
        {"cut.wav", "out.wav", "ends early: 1196 of 1200 bytes", Pcm16, 4},
        {"cut.rf64", "out.wav", "ends early", SF_FORMAT_RF64 | SF_FORMAT_PCM_16, 900},
        {"cut.w64", "out.wav", "ends early", SF_FORMAT_W64 | SF_FORMAT_PCM_16, 900},
        // The title is a chunk of odd length in front of the sound.
        {"cut.aiff", "out.wav", "ends early", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 900},
        {"cut.au", "out.wav", "ends early", SF_FORMAT_AU | SF_FORMAT_PCM_16, 900},
        {"cut.flac", "out.wav", "of 300 frames could be read", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 900},
        {"in.wav", "/dev/full", "No space left on device", Pcm16},
        {"in.wav", "nowhere/out.wav", "No such file or directory", Pcm16},
        {"in.wav", "..", "Is a directory", Pcm16},
    });
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

// On its own, so that tests/coverage can leave it out: a program that counts could not write its counts either. The
// limits, in blocks of 512 bytes, are met in the middle, and while a coder is flushed.
TEST_F(EqualizeCommand, LosesNothingWhenNoFileCanGrow) {
    expectNothingLost({
        {"in.wav", "out.wav", "File too large", Pcm16, 0, "ulimit -f 1;"},
        {"in.wav", "out.flac", "File too large", Pcm16, 0, "ulimit -f 1;"},
        {"in.wav", "out.ogg", "File too large", Pcm16, 0, "ulimit -f 7;"},
    });
}

TEST_F(EqualizeCommand, RemovesItsTemporaryFileWhenASignalEndsIt) {
    writeSound("sound.wav", noise(44100, 1, 100));
    const std::string sound = contents("sound.wav");
    ASSERT_EQ(mkfifo(path("pipe.wav").c_str(), 0600), 0);
    const auto before = names();
    for (const int signal : {SIGTERM, SIGINT}) {
        const pid_t child = start("pipe.wav out.wav");
        // The command waits for the rest of the sound, which does not come.
        std::ofstream pipe(path("pipe.wav"), std::ios::binary);
        pipe << sound.substr(0, sound.size() - 40) << std::flush;
        for (int tries = 0; tries < 1000 && names() == before; ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_EQ(names().size(), before.size() + 1);
        kill(child, signal);
        EXPECT_EQ(finish(child).signal, signal);
        EXPECT_EQ(names(), before);
    }
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(EqualizeCommand, NeedsNoMoreMemoryForALongFile) {
    const auto memoryFor = [&](std::size_t seconds) {
        writeSound("in.wav", noise(44100, 2, seconds * 44100, Pcm16));
        return run("in.wav out.wav --band 2:gain=2").mostKilobytes;
    };
    const long forShort = memoryFor(6);
    EXPECT_LT(memoryFor(60), forShort + 2048);
}
#endif

TEST_F(EqualizeCommand, RefusesBadUsageAndTellsWhatWouldBeRight) {
    writeSound("in.wav", noise(48000, 1, 100));
    const std::pair<std::string, const char*> rows[] = {
        {"third", "third"},
        {"--volume 12.5", "-12 to 12 dB"},
        {"--volume nan", "-12 to 12 dB"},
        {"--volume 3dB", "-12 to 12 dB"},
        {"--band 5:gain=1", "1 to 4"},
        {"--band 1", "N:freq=HZ,gain=DB,q=Q"},
        {"--band 1:gain=1,width=2", "freq=HZ, gain=DB and q=Q"},
        {"--band 1:freq=21.76", "21.77 to 21768.70 Hz"},
        {"--band 1:freq=21768.8", "21.77 to 21768.70 Hz"},
        {"--band 1:gain=1", "21.77 to 21768.70 Hz"},
        {"--band 1:freq=19.9 --no-rate-correction", "20 to 20000 Hz"},
        {"--set 13=0", "0 to 12"},
        {"--block 0", "1 to 1000000"},
    };
    for (const auto& [options, message] : rows) expectFailure(2, "in.wav out.wav " + options, message);
    expectFailure(2, "", "INPUT and OUTPUT are missing");
    expectFailure(2, "in.wav", "OUTPUT is missing");
    EXPECT_EQ(names(), std::set<std::string>{"in.wav"});
    equalize("--band 1:freq=21.77 --band 2:freq=21768.7");
}

TEST_F(EqualizeCommand, ReadsThePresetThatItWritesAndNamesTheLineOfABadOne) {
    writeSound("in.wav", noise(48000, 1, 6000));
    const auto direct = equalized("--volume -1.25 --band 2:freq=440.5,gain=-6.5,q=1.7 --set 5=0.3 --save-preset 'a b'");
    EXPECT_EQ(equalized("--preset 'a b'"), direct);

    // Whatever the order, the command line overrides it.
    folder.write("a b", "volume=9 # loud\r\n\r\n  band1.gain =\t3\nband1.freq = 20\n");
    EXPECT_EQ(equalized("--volume 0 --band 1:gain=0,freq=500 --preset 'a b'"), readSound("in.wav").samples);

    const std::map<std::string, std::string> rows = {
        {"volume", "'volume' is not of the form name = value"},
        {"volume = loud", "volume: 'loud' is not a number from -12 to 12 dB"},
        {"parameter13 = 0", "there is no setting 'parameter13'"},
        {"parameter1 = 2", "parameter1: '2' is not a number from 0 to 1"},
        {"band1.gain = 1", "band 1: 20 Hz is out of reach at 48000 Hz"},
    };
    for (const auto& [line, message] : rows) {
        folder.write("preset", "# A comment.\n\n" + line + "\n");
        expectFailure(1, "--preset preset in.wav out.wav", "preset:3: " + message);
    }
    expectFailure(1, "--preset missing --list", "No such file");
}

TEST_F(EqualizeCommand, ListsParametersRangesAndValues) {
    const std::string list = run("--list --band 2:freq=100,gain=-5,q=10").out;
    for (const char* const row : {"    0  volume      Volume        -12 to 12 dB    0.500000  0.00 dB\n",
                                  "    2  band2.freq  Frequency(2)  20 to 20000 Hz  0.767010  100.00 Hz\n",
                                  "    6  band2.gain  Gain(2)       -10 to 10 dB    0.750000  -5.00 dB\n"})
        EXPECT_NE(list.find(row), std::string::npos) << row << "\n" << list;
    expectFailure(1, "--list > /dev/full", "No space left on device");
}

TEST_F(EqualizeCommand, TakesTheLibraryThatIsNamedOrElseBesideItselfOrElseWhereItIsInstalled) {
    std::filesystem::create_directories(path("bin"));
    std::filesystem::create_directories(path("lib/vst"));
    program = path("bin/equalize");
    std::filesystem::copy_file(EQ_EQUALIZE_PATH, program);
    const std::string beside = path("bin/Parametric Equalizer.so");
    const std::string installed = path("lib/vst/Parametric Equalizer.so");
    for (const std::string& place : {beside, installed}) expectFailure(1, "--list", place);
    std::filesystem::copy_file(EQ_LIBRARY_PATH, installed);
    EXPECT_EQ(run("--list").exitCode, 0);

    // Also through a link in another folder. The one beside the program comes first.
    std::filesystem::create_symlink(program, path("link"));
    program = path("link");
    folder.write("bin/Parametric Equalizer.so", "not a library");
    expectFailure(1, "--list", beside);
    EXPECT_EQ(run("--plugin 'Parametric Equalizer.so' --list", "cd lib/vst;").exitCode, 0);
}

TEST_F(EqualizeCommand, DrawsTheMeasuredResponse) {
    struct Point {
        double x;
        double y;
    };
    writeSound("in.wav", noise(96000, 1, 10));
    equalize("--plot plot.svg --band 2:freq=400,gain=8,q=4 --volume -2");

    // What a reader measures: pixels against the axes' labels.
    std::map<std::string, Point> labels;
    std::vector<Point> peaks;
    std::set<std::string> dashes;
    std::istringstream svg(contents("plot.svg"));
    for (std::string line; std::getline(svg, line);) {
        const auto between = [&line](const std::string& start, char end) {
            const std::size_t begin = std::min(line.size(), line.find(start) + start.size());
            return line.substr(begin, line.find(end, begin) - begin);
        };
        if (line.starts_with("<text "))
            labels[between(">", '<')] = {std::stod(between(" x=\"", '"')), std::stod(between(" y=\"", '"'))};
        if (!line.starts_with("<polyline ")) continue;
        dashes.insert(between("stroke-dasharray=\"", '"'));
        std::istringstream points(between("points=\"", '"'));
        Point& peak = peaks.emplace_back(Point{0.0, 1e9});
        for (Point point = {}; points >> point.x && points.ignore() && points >> point.y;)
            if (point.y < peak.y) peak = point;
    }
    for (const char* const label : {"20", "20k", "Band 2", "400 Hz", "+8.0 dB", "Q 4.0", "All bands, volume −2.0 dB"})
        EXPECT_EQ(labels.count(label), 1U) << label;
    // A line for each band and the sum, told apart without colours.
    ASSERT_EQ(peaks.size(), 5U);
    EXPECT_EQ(dashes.size(), 5U);
    const double decade = labels["1k"].x - labels["100"].x;
    const double decibel = (labels["0"].y - labels["+6"].y) / 6.0;
    EXPECT_NEAR(1000.0 * std::pow(10.0, (peaks[4].x - labels["1k"].x) / decade), 400.0, 4.0);
    EXPECT_NEAR((peaks[0].y - peaks[1].y) / decibel, 8.0, 0.05);
    EXPECT_NEAR((peaks[0].y - peaks[4].y) / decibel, 6.0, 0.05);
}

TEST_F(EqualizeCommand, ShowsItsProgressOnATerminalOnly) {
    writeSound("in.wav", noise(44100, 1, 1000));
    const PseudoTerminal terminal;
    // Held open, so that what the command writes stays readable.
    const std::ofstream held(terminal.path());
    equalize("2> " + terminal.path());
    EXPECT_EQ(terminal.receive(2), "\r[");

    const std::string notes = equalize("");
    EXPECT_EQ(notes.find('\r'), std::string::npos) << notes;
    EXPECT_EQ(notes.find('\n'), notes.size() - 1) << notes;
}

} // namespace
