#include "tests/support/CommandTest.h"

#include <cmath>
#include <set>
#include <tuple>
#include <vector>

#include <sndfile.hh>

namespace eq {

namespace {

/// Runs with many files. Each file has one constant sample value, so that no file can be taken for another.
class EqualizeBatch : public CommandTest {
protected:
    EqualizeBatch() : CommandTest(EQ_EQUALIZE_PATH) {}

    void writeSound(const std::string& name, float value, int rate = 44100) const {
        std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
        SndfileHandle file(path(name), SFM_WRITE, SF_FORMAT_WAV | SF_FORMAT_FLOAT, 1, rate);
        const std::vector<float> sound(5000, value);
        file.write(sound.data(), 5000);
    }
    [[nodiscard]] float lastSample(const std::string& name) const {
        SndfileHandle file(path(name));
        std::vector<float> sound(5000);
        EXPECT_EQ(file.read(sound.data(), 5000), 5000) << name;
        return sound.back();
    }
    [[nodiscard]] std::set<std::string> tree() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path()))
            if (entry.is_regular_file()) names.insert(entry.path().lexically_relative(folder.path()).string());
        return names;
    }
    void expectRun(const std::string& arguments, int exitCode, const std::string& message) const {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, exitCode) << arguments << "\n" << outcome.said;
        EXPECT_NE(outcome.said.find(message), std::string::npos) << message << "\n" << outcome.said;
    }
};

TEST_F(EqualizeBatch, EqualizesEachFileIntoItsOwnPlaceAndGoesOnAfterAFailure) {
    for (int i = 1; i <= 40; ++i)
        writeSound((i % 2 == 0 ? "in/even/" : "in/") + std::to_string(i) + ".wav", static_cast<float>(i) / 100.0F);
    folder.write("in/1 bad.wav", "no sound");
    folder.write("in/text.txt", "no sound either");
    expectRun("--recursive --output-dir in/out --suffix -x --jobs 4 --volume 6 in", 1,
              "written: 40, skipped: 0, failed: 1");
    for (int i = 1; i <= 40; ++i) {
        const std::string name = (i % 2 == 0 ? "in/out/even/" : "in/out/") + std::to_string(i) + "-x.wav";
        EXPECT_NEAR(lastSample(name), i / 100.0 * std::pow(10.0, 0.3), 1e-5) << name;
    }
    EXPECT_EQ(tree().size(), 82U);
    std::filesystem::remove(path("in/out/7-x.wav"));
    expectRun("--recursive --output-dir in/out --suffix -x --skip-existing in", 1,
              "written: 1, skipped: 39, failed: 1");
    expectRun("--output-dir in/out in/even/2.wav in/missing.wav", 1, "in/missing.wav: No such file");
}

TEST_F(EqualizeBatch, WritesNothingThatItMustNotReplaceOrOnlyPlans) {
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
        {"--output-dir out .", 2, "--recursive equalizes the files in it"},
        {"--output-dir out a.wav --band 1:freq=30k", 1, "a.wav: band 1: 30000 Hz is out of reach"},
    };
    for (const auto& [arguments, exitCode, message] : rows) {
        expectRun(std::string("--dry-run ") + arguments, exitCode, message);
        EXPECT_EQ(tree(), before) << arguments;
    }
    expectRun("-n a.wav a-x.wav", 1, "a-x.wav: the file exists");
    EXPECT_FLOAT_EQ(lastSample("a-x.wav"), 0.2F);
}

} // namespace

} // namespace eq
