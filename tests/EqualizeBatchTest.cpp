#include "tests/support/EqualizeCommand.h"

#include <set>
#include <sstream>
#include <tuple>

namespace eq {

namespace {

/// Runs `equalize` with many files. All samples of a file have the same value, by which a test identifies the output.
class EqualizeBatch : public EqualizeCommand {
protected:
    using EqualizeCommand::writeSound;
    void writeSound(const std::string& name, float value, int rate = 44100) const {
        std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
        writeSound(name, {rate, 1, std::vector<float>(5000, value)});
    }
    [[nodiscard]] float lastSample(const std::string& name) const { return readSound(name).samples.at(4999); }
    [[nodiscard]] std::set<std::string> tree() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path()))
            if (entry.is_regular_file()) names.insert(entry.path().lexically_relative(folder.path()).string());
        return names;
    }
};

TEST_F(EqualizeBatch, WritesAnOutputForEachInputAndContinuesAfterAFailure) {
    for (int i = 1; i <= 40; ++i)
        writeSound((i % 2 == 0 ? "in/even/" : "in/") + std::to_string(i) + ".wav", static_cast<float>(i) / 100.0F);
    folder.write("in/1 bad.wav", "no sound");
    folder.write("in/text.txt", "no sound either");
    expectRun("--recursive --output-dir in/out --suffix -x --jobs 4 --volume 6 in", 1,
              {"written: 40, skipped: 0, failed: 1"});
    for (int i = 1; i <= 40; ++i) {
        const std::string name = (i % 2 == 0 ? "in/out/even/" : "in/out/") + std::to_string(i) + "-x.wav";
        EXPECT_NEAR(lastSample(name), i / 100.0 * std::pow(10.0, 0.3), 1e-5) << name;
    }
    EXPECT_EQ(tree().size(), 82U);
    std::filesystem::remove(path("in/out/7-x.wav"));
    expectRun("--recursive --output-dir in/out --suffix -x --skip-existing in", 1,
              {"written: 1, skipped: 39, failed: 1"});
    expectRun("--output-dir in/out in/even/2.wav in/missing.wav", 1, {"in/missing.wav: No such file"});
}

TEST_F(EqualizeBatch, WritesNothingInADryRunAndReplacesNoProtectedFile) {
    writeSound("a.wav", 0.1F);
    writeSound("a-x.wav", 0.2F);
    writeSound("b/a.wav", 0.3F);
    std::filesystem::create_symlink("a.wav", path("link.wav"));
    const std::set<std::string> before = tree();
    const std::tuple<const char*, int, const char*> rows[] = {
        {"--output-dir out a.wav b/a.wav", 2, "a.wav and b/a.wav have the same output: out/a.wav"},
        {"--output-dir b ./a.wav", 0, "would be written: 1"},
        {"--output-dir b/.. b/a.wav a.wav", 2, "b/../a.wav, the output of b/a.wav, is an input, too"},
        {"--output-dir b b/a.wav", 2, "b/a.wav would be replaced"},
        {"--suffix -x a.wav a-x.wav", 2, "a-x.wav, the output of a.wav, is an input, too"},
        {"--output-dir b/../. --suffix '' a.wav", 2, "--suffix: the value is empty"},
        {"a.wav c.wav --save-preset ./c.wav", 2, "./c.wav is used twice"},
        {"a.wav c.wav --plot link.wav", 2, "link.wav is used twice"},
        {"-n a.wav a-x.wav", 1, "a-x.wav: the file exists"},
        {"-n a.wav link.wav", 1, "link.wav: the file exists"},
        {"--recursive --suffix -x .", 0, "./a.wav -> ./a-x.wav, which is replaced\n./b/a.wav -> ./b/a-x.wav\n"},
        {"--save-preset p", 2, "--dry-run needs INPUT and OUTPUT"},
        {"--output-dir out .", 2, "--recursive equalizes the files in it"},
        {"--output-dir out a.wav --band 1:freq=30k", 1, "a.wav: band 1: 30000 Hz is out of reach"},
    };
    for (const auto& [arguments, exitCode, message] : rows) {
        expectRun(std::string("--dry-run ") + arguments, exitCode, {message});
        EXPECT_EQ(tree(), before) << arguments;
    }
    std::filesystem::create_directory(path("links"));
    std::filesystem::create_symlink("a-x.wav", path("links/a.wav"));
    expectRun("--output-dir links a.wav a-x.wav", 2, {"a.wav and a-x.wav have the same output: links/a-x.wav"});
    expectRun("-n a.wav a-x.wav", 1, {"a-x.wav: the file exists"});
    EXPECT_FLOAT_EQ(lastSample("a-x.wav"), 0.2F);
}

class EqualizeHabits : public EqualizeBatch {};

TEST_F(EqualizeHabits, AcceptsUnitsPrefersTheLaterOptionAndRefusesEmptyValues) {
    writeSound("48.wav", 0.5F, 48000);
    folder.write("p", "\xEF\xBB\xBF"
                      "volume = 3 dB\nband1.freq = 1.2 kHz\n");
    folder.write("empty", "");
    const std::tuple<const char*, int, const char*> rows[] = {
        {"--preset empty --preset p --list", 0, "band1.freq  Frequency(1)  20 to 20000 Hz  0.407283  1200.00 Hz\n"},
        {"--preset p --list", 0, "0.375000  3.00 dB\n"},
        {"--list --band 2:freq=1.5k,gain=-3DB --band 2:freq=60hz", 0, "0.840960  60.00 Hz\n"},
        {"--list --band 2:freq=3dB", 2, "'3dB' is not a number"},
        {"--list --volume 1k", 2, "'1k' is not a number"},
        {"--list 48.wav --set 2=0.5", 0, "Frequency(2)  21.77 to 21768.70 Hz  0.500000  688.39 Hz\n"},
        {"--list 48.wav --set 2=0.5", 0, "not corrected for the rate: band2.freq at 688.39 Hz\n"},
        {"--list --json --volume -3", 0,
         R"({"index": 0, "symbol": "volume", "name": "Volume", "unit": "dB", "minimum": -12, "maximum": 12, )"
         R"("p": 0.625, "value": -3},)"},
        {"--preset= 48.wav out.wav", 2, "--preset=: the value is empty"},
        {"--preset '' 48.wav out.wav", 2, "--preset: the value is empty"},
        {"48.wav ''", 2, "the value is empty"},
        {"48.wav out.wav", 0, "no setting was given"},
        {"--version", 0, "equalize 2."},
        {"p out.wav", 1, "p: not a readable audio file: the contents have no known audio format"},
        {"\"$(printf '\\033[31m')\" x.wav", 1, "\\x1B[31m: No such file"},
    };
    for (const auto& [arguments, exitCode, message] : rows) expectRun(arguments, exitCode, {message});
    std::istringstream help(run("--help").said);
    for (std::string line; std::getline(help, line);) EXPECT_LE(line.size(), 80U) << line;
}

TEST_F(EqualizeHabits, NamesTheBrokenLanguageFileIfTheLibraryDoesNotLoad) {
    std::filesystem::copy_file(EQ_LIBRARY_PATH, path("library.so"));
    folder.write("Equalizer1033.lng", "[Shared]\nIDS_DB\n");
    expectRun("--plugin library.so --list", 1, {"Equalizer1033.lng:2: equal (=) expected"});
}

TEST_F(EqualizeHabits, ShowsProgressOnATerminalInTwentyColumnsWithoutEscapeSequences) {
    for (int i = 1; i <= 9; ++i) writeSound(std::to_string(i) + ".wav", 0.1F);
    EXPECT_EQ(expectRun("--output-dir o ?.wav", 0).find('\r'), std::string::npos);
    program = "/usr/bin/script";
    const std::string shown =
        run("-qec \"stty cols 20; '" EQ_EQUALIZE_PATH "' --output-dir o ?.wav\" /dev/null < /dev/null").said;
    EXPECT_EQ(shown.find('\x1B'), std::string::npos) << shown;
    ASSERT_NE(shown.find("\r["), std::string::npos) << shown;
    EXPECT_NE(shown.find("/9"), std::string::npos) << shown;
    std::istringstream lines(shown);
    for (std::string line; std::getline(lines, line, '\r');)
        EXPECT_TRUE(line.size() < 20 || line.starts_with("equalize: ")) << line;
}

TEST_F(EqualizeHabits, NormalizesThePeakWithoutClipping) {
    const auto levels = [this](const std::string& options, const char* output = "out.wav") {
        expectRun("in.wav " + std::string(output) + " " + options, 0);
        return samplesOf(output);
    };
    writeSound("in.wav", {44100, 1, {1.6F, -0.4F, 0.0F}});
    EXPECT_EQ(levels("--headroom"), (std::vector<float>{1.0F, -0.25F, 0.0F}));
    EXPECT_EQ(levels("--headroom --volume -12"), levels("--volume -12"));
    EXPECT_FLOAT_EQ(levels("--normalize -20 --normalize -6.0206dB --volume 5")[0], 0.5F);
    // The highest sample of 24 bits is one step below 1. With --dither, the highest sample must not clip, either.
    EXPECT_EQ(levels("--normalize 0", "out.flac")[0], 1.0F - 0x1p-23F);
    expectRun("in.wav out.flac --normalize 0 --dither", 0, {"gain applied: -4.08 dB\nequalize: in.wav ->"});
    writeSound("in.wav", {44100, 1, {-1.0F, 0.5F, 0.0F}});
    EXPECT_EQ(levels("--headroom", "out.flac"), (std::vector<float>{-1.0F, 0.5F, 0.0F}));
    expectRun("in.wav out.flac --normalize 1", 2, {"-100 to 0 dB"});
}

TEST_F(EqualizeHabits, DithersWithTheSameTriangularNoiseInEachRun) {
    constexpr std::size_t Count = 200000;
    writeSound("in.wav", {44100, 1, std::vector<float>(Count, 0.25F * 0x1p-15F)});
    for (const char* const options : {"a.wav --block 1000", "b.wav --block 77"})
        expectRun("in.wav --dither " + std::string(options), 0, {"--dither has no effect on WAV"});
    EXPECT_EQ(contents("a.wav"), contents("b.wav"));
    // The samples of these VOC files have 16 bits.
    for (const char* const name : {"a.voc", "b.voc"}) expectRun("in.wav " + std::string(name) + " --dither", 0);
    EXPECT_EQ(contents("a.voc"), contents("b.voc"));
    const std::vector<float> sound = samplesOf("a.voc");
    ASSERT_EQ(sound.size(), Count);
    double sum = 0.0;
    double squares = 0.0;
    for (const float sample : sound) {
        const double steps = static_cast<double>(sample) * 0x1p15;
        EXPECT_LE(std::fabs(steps), 2.0);
        sum += steps;
        squares += (steps - 0.25) * (steps - 0.25);
    }
    // Triangular dither keeps the mean. The variance of the total error is 1/4 of a squared step for every sound.
    EXPECT_NEAR(sum / Count, 0.25, 0.005);
    EXPECT_NEAR(squares / Count, 0.25, 0.005);
}

} // namespace

} // namespace eq
