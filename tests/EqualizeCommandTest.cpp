#include "tests/support/EqualizeCommand.h"

#include <algorithm>
#include <cstdio>
#include <set>
#include <sstream>
#include <tuple>

#include <sys/stat.h>

namespace eq {

namespace {

TEST_F(EqualizeCommand, AppliesTheVolumeFromTheFirstSampleWithAnyBlockSize) {
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

TEST_F(EqualizeCommand, HasTheRequestedResponseAtEachRate) {
    // Rate, options, expected decibels by frequency (at a peak, near it, and far from it), expected note on the rate.
    const std::tuple<int, const char*, std::map<double, double>, std::string> rows[] = {
        {96000,
         "--band 1:freq=60,gain=3,q=1 --band 2:freq=999,gain=-2,q=1 --band 2:freq=700,q=4",
         {{60, 2.999}, {100, 1.657}, {700, -1.968}, {800, -1.021}, {15000, 0}},
         "96000 Hz file: frequencies are scaled by 44100/96000"},
        {96000, "--no-rate-correction --band 1:gain=8", {{43.54, 8}, {50, 4.492}}, "not corrected"},
        // Normalised values are not corrected for the rate, and override the other settings.
        {48000, "--set 2=0.5 --set 6=0 --set 10=1 --set 0=0.75 --volume 3", {{688.4, 4}, {900, 3.006}}, ""},
        {44100, "--band 1:gain=4", {{20, 4}, {22, 2.531}, {1000, 0}}, ""},
    };
    for (const auto& [rate, options, response, note] : rows) {
        SCOPED_TRACE(options);
        writeSound("in.wav", impulse(rate, 1 << 17));
        const std::string notes = equalize(options);
        for (const auto& [frequency, decibels] : response)
            EXPECT_NEAR(decibelsAt(readSound("out.wav"), frequency), decibels, 0.01) << frequency << " Hz";
        EXPECT_NE(notes.find(note), std::string::npos) << notes;
        EXPECT_EQ(notes.find("frequencies") == std::string::npos, note.empty()) << notes;
    }
}

TEST_F(EqualizeCommand, KeepsTheFormatUnlessTheExtensionNamesAnother) {
    constexpr int U8 = SF_FORMAT_WAV | SF_FORMAT_PCM_U8;
    constexpr int Ulaw = SF_FORMAT_WAV | SF_FORMAT_ULAW;
    constexpr int Pcm24 = SF_FORMAT_WAV | SF_FORMAT_PCM_24;
    constexpr int Vorbis = SF_FORMAT_OGG | SF_FORMAT_VORBIS;
    // clang-format off
    const std::tuple<int, const char*, int, bool> rows[] = {
        {U8, "o", U8, true}, {Pcm24, "o.AIF", SF_FORMAT_AIFF | SF_FORMAT_PCM_24, true},
        {Float, "o.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_24, false}, {Pcm16, "o.ogg", Vorbis, false},
        {Ulaw, "o.caf", SF_FORMAT_CAF | SF_FORMAT_ULAW, true}, {Vorbis, "o.wav", Pcm24, false}};
    // clang-format on
    for (const auto& [format, place, expected, isExact] : rows) {
        SCOPED_TRACE(place);
        writeSound("in", noise(44100, 2, 5000, format));
        expectRun(std::string("in ") + place, 0);
        const Sound output = readSound(place);
        EXPECT_EQ(output.format, expected) << std::hex << output.format;
        EXPECT_EQ(output.samples.size(), 10000U);
        EXPECT_TRUE(!isExact || output.samples == readSound("in").samples);
    }
}

TEST_F(EqualizeCommand, RoundsAndClipsIntegerSamplesAndReportsTheClipping) {
    constexpr float Step = 0x1p-23F;
    constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
    writeSound("in.wav", {44100, 1, {1.0F, -1.0F, 1.5F, 0.6F * Step, 0.4F * Step, -0.6F * Step, -0.4F * Step, NaN}});
    expectRun("in.wav out.flac --replace-nan", 0, {"1 sample was clipped to full scale; the highest is 3.52 dB"});
    EXPECT_EQ(readSound("out.flac").samples,
              (std::vector<float>{1.0F - Step, -1.0F, 1.0F - Step, Step, 0.0F, -Step, 0.0F, 0.0F}));
    EXPECT_EQ(equalize("--replace-nan").find("clipped"), std::string::npos);
}

TEST_F(EqualizeCommand, ReplacesItsOwnInputAndKeepsPermissionsAndLinks) {
    writeSound("sound.wav", noise(44100, 1, 3000));
    const float before = readSound("sound.wav").samples[7];
    expectRun("--volume -12 link.wav link.wav", 0, {}, "chmod 640 sound.wav; ln -s sound.wav link.wav;");
    EXPECT_TRUE(std::filesystem::is_symlink(path("link.wav")));
    EXPECT_NEAR(readSound("sound.wav").samples[7], before * std::pow(10.0, -0.6), 1e-6);
    expectRun("sound.wav fresh.wav", 0, {}, "umask 027;");
    for (const char* const name : {"sound.wav", "fresh.wav"})
        EXPECT_EQ(static_cast<int>(std::filesystem::status(path(name)).permissions()), 0640) << name;
    EXPECT_EQ(files().size(), 3U);
}

TEST_F(EqualizeCommand, KeepsAllFilesWhenTheInputOrTheOutputFails) {
    writeSound("in.wav", noise(44100, 2, 300, Pcm16));
    folder.write("out.wav", "This is not sound, whatever its name says.\n");
    // The title follows the sound in WAV, and precedes the sound in AIFF, in a chunk of odd length.
    // clang-format off
    const std::tuple<std::string, int, const char*> cutFiles[] = {
        {"cut.wav", SF_FORMAT_WAV, "ends early: 328 of 1200 bytes"}, {"cut.w64", SF_FORMAT_W64, "ends early"},
        {"cut.rf64", SF_FORMAT_RF64, "ends early: 328 of 1200 bytes"}, {"cut.aiff", SF_FORMAT_AIFF, "ends early"},
        {"cut.au", SF_FORMAT_AU, "ends early: 300 of 1200 bytes"}, {"cut.flac", SF_FORMAT_FLAC, "of 300 frames could"}};
    // clang-format on
    for (const auto& [name, format, message] : cutFiles) {
        expectRun("in.wav " + name, 0);
        EXPECT_EQ(SndfileHandle(path(name)).format() & SF_FORMAT_TYPEMASK, format) << name;
        std::filesystem::resize_file(path(name), std::filesystem::file_size(path(name)) - 900);
        expectFailure(1, name + " out.wav", message);
    }
    // clang-format off
    const std::pair<const char*, const char*> rows[] = {
        {"missing.wav out.wav", "No such file"}, {". out.wav", "Is a directory"}, {"in.wav ..", "Is a directory"},
        {"out.wav out.wav", "not a readable audio file"}, {"in.wav /dev/full", "No space left on device"},
        {"in.wav nowhere/out.wav", "No such file or directory"}, {"--list > /dev/full", "No space left on device"},
        {"--preset missing --list", "No such file"}};
    // clang-format on
    for (const auto& [arguments, message] : rows) expectFailure(1, arguments, message);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

// tests/coverage leaves this test out, because the limits would also keep the program from writing its coverage counts.
// The limits are in blocks of 512 bytes. The output reaches a limit in the middle, or while an encoder is flushed.
TEST_F(EqualizeCommand, LosesNothingWhenNoFileCanGrow) {
    writeSound("in.wav", noise(44100, 2, 300, Pcm16));
    folder.write("out.wav", "old");
    for (const auto& [place, limit] : {std::pair("out.wav", "1;"), {"out.flac", "1;"}, {"out.ogg", "7;"}})
        expectFailure(1, std::string("in.wav ") + place, "File too large", std::string("ulimit -f ") + limit);
}

TEST_F(EqualizeCommand, RemovesItsTemporaryFileWhenASignalEndsIt) {
    writeSound("in.wav", noise(44100, 1, 100));
    ASSERT_EQ(mkfifo(path("pipe.wav").c_str(), 0600), 0);
    for (const auto& [name, number] : {std::pair<std::string, int>("TERM", 15), {"INT", 2}}) {
        // The command waits for the rest of the sound, which never arrives.
        const std::string feed = "{ { head -c -40 in.wav; for try in $(seq 1000); do ls .unfinished* >&2 && kill -" +
                                 name + " $$ && break; sleep 0.01; done; } > pipe.wav; } > /dev/null 2>&1 &";
        expectRun("pipe.wav out.wav", 128 + number, {}, feed);
        EXPECT_EQ(files().size(), 2U) << "a temporary file is left";
    }
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(EqualizeCommand, NeedsNoMoreMemoryForALongFile) {
    writeSound("in.wav", noise(44100, 2, 60U * 44100U, Pcm16));
    equalize("--band 2:gain=2", "ulimit -d 8192;");
}
#endif

TEST_F(EqualizeCommand, RefusesBadUsageAndNamesTheAcceptedValues) {
    writeSound("in.wav", noise(48000, 1, 100));
    expectFailure(2, "", "INPUT and OUTPUT are missing");
    expectFailure(2, "in.wav", "OUTPUT is missing");
    expectFailure(2, "in.wav out.unknown", "extension '.unknown'");
    // clang-format off
    const std::pair<std::string, const char*> rows[] = {
        {"third", "third"}, {"--volume 12.5", "-12 to 12 dB"}, {"--volume nan", "-12 to 12 dB"},
        {"--volume 3Hz", "-12 to 12 dB"}, {"--band 5:gain=1", "1 to 4"}, {"--band 1", "N:freq=HZ,gain=DB,q=Q"},
        {"--band 1:gain=1,width=2", "freq=HZ, gain=DB and q=Q"}, {"--band 1:freq=21.76", "21.77 to 21768.70 Hz"},
        {"--band 1:freq=21768.8", "21.77 to 21768.70 Hz"}, {"--band 1:gain=1", "21.77 to 21768.70 Hz"},
        {"--band 1:freq=19.9 --no-rate-correction", "20 to 20000 Hz"}, {"--set 13=0", "0 to 12"},
        {"--block 0", "1 to 1000000"}};
    // clang-format on
    for (const auto& [options, message] : rows) expectFailure(2, "in.wav out.wav " + options, message);
    equalize("--band 1:freq=21.77 --band 2:freq=21768.7");
}

TEST_F(EqualizeCommand, FindsAFactoryPresetUnlessAFileHasItsName) {
    writeSound("in.wav", noise(48000, 1, 6000));
    const auto fromFactory = equalized("--preset hum-60");
    EXPECT_EQ(fromFactory, equalized("--band 1:freq=60,gain=-10,q=10 --band 2:freq=120,gain=-10,q=10 "
                                     "--band 3:freq=180,gain=-10,q=10 --band 4:freq=240,gain=-8,q=10"));
    folder.write("hum-60", "volume = -12\n");
    EXPECT_NE(equalized("--preset hum-60"), fromFactory) << "the file has no precedence";
}

TEST_F(EqualizeCommand, ReadsThePresetThatItWritesAndNamesTheLineOfAFault) {
    writeSound("in.wav", noise(48000, 1, 6000));
    const auto direct = equalized("--volume -1.25 --band 2:freq=440.5,gain=-6.5,q=1.7 --set 5=0.3 --save-preset 'a b'");
    EXPECT_EQ(equalized("--preset 'a b'"), direct);

    // The command line overrides the preset in any order of options and lines.
    folder.write("a b", "volume=9 # loud\r\n\r\n  band1.gain =\t3\nband1.freq = 20\n");
    EXPECT_EQ(equalized("--volume 0 --band 1:gain=0,freq=500 --preset 'a b'"), readSound("in.wav").samples);

    const std::pair<std::string, std::string> rows[] = {
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
}

TEST_F(EqualizeCommand, ListsParametersRangesAndValues) {
    expectRun("--list --band 2:freq=100,gain=-5,q=10", 0,
              {"    0  volume      Volume        -12 to 12 dB    0.500000  0.00 dB\n",
               "    2  band2.freq  Frequency(2)  20 to 20000 Hz  0.767010  100.00 Hz\n",
               "    6  band2.gain  Gain(2)       -10 to 10 dB    0.750000  -5.00 dB\n"});
}

TEST_F(EqualizeCommand, SearchesTheLibraryBesideTheProgramAndThenWhereItIsInstalled) {
    // The test starts the command through a link in another folder.
    std::filesystem::create_directories(path("bin"));
    std::filesystem::create_directories(path("lib/vst"));
    std::filesystem::copy_file(EQ_EQUALIZE_PATH, path("bin/equalize"));
    std::filesystem::create_symlink("bin/equalize", path("link"));
    program = path("link");
    const std::string beside = path("bin/Parametric Equalizer.so");
    const std::string installed = path("lib/vst/Parametric Equalizer.so");
    for (const std::string& place : {beside, installed}) expectFailure(1, "--list", place);
    std::filesystem::copy_file(EQ_LIBRARY_PATH, installed);
    expectRun("--list", 0);
    folder.write("bin/Parametric Equalizer.so", "not a library");
    expectFailure(1, "--list", beside);
    expectRun("--plugin 'Parametric Equalizer.so' --list", 0, {}, "cd lib/vst;");
}

TEST_F(EqualizeCommand, DrawsTheMeasuredResponse) {
    expectRun("--plot plot.svg --band 1:freq=60 --band 2:freq=500,gain=8,q=4 --volume -2", 0);
    const std::string svg = contents("plot.svg");
    for (const char* const text : {"20k", "Band 2", "60 Hz", "500 Hz", "+8.0 dB", "Q 4.0", "All bands, volume −2.0 dB"})
        EXPECT_NE(svg.find(">" + std::string(text) + "<"), std::string::npos) << text;

    // Compares the highest point (y, x) of each curve with the labels of the axes, as a reader of the chart does.
    std::vector<std::pair<double, double>> peaks;
    std::set<std::string> dashes;
    for (auto at = svg.find("points=\""); at != std::string::npos; at = svg.find("points=\"", at + 1)) {
        const std::size_t pattern = svg.rfind("dasharray", at);
        dashes.insert(svg.substr(pattern, at - pattern));
        std::istringstream points(svg.substr(svg.find('"', at) + 1));
        auto& peak = peaks.emplace_back(1e9, 0.0);
        for (double x = 0.0, y = 0.0; points >> x && points.ignore() && points >> y;) peak = std::min(peak, {y, x});
    }
    const auto ofLabel = [&svg](const std::string& attribute, const std::string& label) {
        const std::size_t at = svg.rfind(attribute + "=\"", svg.find(">" + label + "<"));
        return std::stod(svg.substr(svg.find('"', at) + 1));
    };
    ASSERT_EQ(peaks.size(), 5U);
    EXPECT_EQ(dashes.size(), 5U) << "two curves have the same dashes";
    EXPECT_NEAR(peaks[4].second, ofLabel("x", "500"), 1.0);
    for (const auto& [curve, label] : {std::pair(0U, "0"), {1U, "+8"}, {4U, "+6"}})
        EXPECT_NEAR(peaks[curve].first, ofLabel("y", label) - 4.0, 0.5) << label;
    for (auto at = svg.find("<line"); at != std::string::npos; at = svg.find("<line", at + 1)) {
        double x1 = 0.0, y1 = 0.0, x2 = 0.0, y2 = 0.0;
        std::sscanf(&svg[at], "<line x1=\"%lf\" y1=\"%lf\" x2=\"%lf\" y2=\"%lf\"", &x1, &y1, &x2, &y2);
        EXPECT_TRUE((x1 == x2) != (y1 == y2) && y1 > 0.0) << svg.substr(at, 80);
    }
}

} // namespace

} // namespace eq
