// Runs the command `lngcheck` as a user does, in a folder of its own with blanks in its name.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <sys/wait.h>

namespace {

/// A file without faults, one key a line: line 3 is IDS_DB, line 12 IDD_Options_B1.
const std::vector<std::string> CleanLines = {
    "<CODEPAGE 1252>",
    "[Parametric Equalizer]",
    "IDS_DB = dB",
    "IDS_Hz = Hz",
    "IDS_kHz = kHz",
    "IDD_Options_Q = Q",
    "IDD_Options_20KHz = 20 kHz",
    "IDD_Options_Freq = Frequency",
    "IDD_Options_20Hz = 20 Hz",
    "IDD_Options_p10dB = +10 dB",
    "IDD_Options_Gain = Gain",
    "IDD_Options_B1 = Band 1",
    "IDD_Options_B2 = Band 2",
    "IDD_Options_B3 = Band 3",
    "IDD_Options_B4 = Band 4",
    "IDD_Options_m10dB = -10 dB",
    "IDD_Options_Master = Master",
    "IDD_Options_p12dB = +12 dB",
    "IDD_Options_m12dB = -12 dB",
    "[Shared]",
    "MSGBOX_OK = OK",
    "MSGBOX_CANCEL = Cancel",
    "MSGBOX_HELP = Help",
    "PRSHT_APPLY_NOW = &Apply",
    "PRSHT_WIZBACK = < &Back",
    "PRSHT_WIZNEXT = &Next >",
    "PRSHT_WIZFINISH = &Finish",
};

std::string textOf(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

/// The clean file with another text in one line.
std::string cleanBut(std::size_t number, const std::string& line, const std::string& codepage = "1252") {
    std::vector<std::string> lines = CleanLines;
    lines[0] = "<CODEPAGE " + codepage + ">";
    lines[number - 1] = line;
    return textOf(lines);
}

struct Outcome {
    int exitCode;
    std::string output;
};

class LngcheckCommand : public ::testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "lngcheck test XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        m_folder = std::filesystem::canonical(pattern);
    }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    [[nodiscard]] std::string path(const std::string& name) const { return (m_folder / name).string(); }

    void write(const std::string& name, const std::string& contents) const {
        std::filesystem::create_directories((m_folder / name).parent_path());
        std::ofstream(m_folder / name, std::ios::binary) << contents;
    }

    [[nodiscard]] std::string contents(const std::string& name) const {
        std::ifstream stream(m_folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    /// Runs in the folder, with the arguments as the shell takes them.
    [[nodiscard]] Outcome run(const std::string& arguments) const {
        const std::string command =
            "cd '" + m_folder.string() + "' && '" + EQ_LNGCHECK_PATH + "' " + arguments + " 2>&1";
        FILE* const pipe = popen(command.c_str(), "r");
        if (pipe == nullptr) return {-1, "popen failed"};
        std::string output;
        for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) output += static_cast<char>(c);
        const int status = pclose(pipe);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
    }

    /// Expects the texts in the output, in this order.
    static void expectInOrder(const std::string& output, const std::vector<std::string>& texts) {
        std::size_t at = 0;
        for (const std::string& text : texts) {
            const std::size_t found = output.find(text, at);
            ASSERT_NE(found, std::string::npos) << "no '" << text << "' in, or not in this order:\n" << output;
            at = found + text.size();
        }
    }

private:
    std::filesystem::path m_folder;
};

TEST_F(LngcheckCommand, TellsFaultsAndWarningsWithFileAndLine) {
    struct Case {
        std::string file;
        std::string contents;
        int exitCode;
        std::vector<std::string> output;
    };
    const Case cases[] = {
        {"A1031.lng", textOf(CleanLines), 0, {"files: 1, faults: 0, warnings: 0\n"}},
        {"A1031.lng", "", 1, {"A1031.lng: the key IDS_DB is missing\n", "PRSHT_WIZFINISH is missing\n", "faults: 24,"}},
        {"A1031.lng",
         cleanBut(12, "IDD_Options_B1"),
         1,
         {"key IDD_Options_B1 is missing", "12: equal (=) expected.\n"}},
        {"A1031.lng",
         cleanBut(3, "IDS_DB = dB\n<FOO>\n<CODEPAGE 932>\nx"),
         1,
         {"A1031.lng:4: Invalid tag '<FOO>':Tag type 'FOO' is unknown.\n",
          "A1031.lng:5: Specified codepage does not appear to match language of file.\n", "A1031.lng:6: equal",
          "faults: 3,"}},
        {"A1031.lng", cleanBut(4, "IDS_Hz = Hz\nids_hz = H"), 1, {"A1031.lng:5: ids_hz is defined in line 4"}},
        {"A1031.lng", cleanBut(2, "[Shared]\nIDS_DB = a\n[Parametric Equalizer]"), 0, {"faults: 0, warnings: 0"}},
        {"A1031.lng", cleanBut(1, "// none\n\nIDS_DB = x"), 1, {"A1031.lng:3: stands in front of the first"}},
        {"A1031.lng", cleanBut(1, "// none") + "a = \\xFC\n", 1, {"A1031.lng:28: the value is not ASCII"}},
        {"A1041.lng", cleanBut(12, "IDD_Options_B1 = \x83", "932"), 1, {":12: the value is no text of code page 932"}},
        {"A1041.lng", cleanBut(12, "IDD_Options_B1 = \x83\x5C", "932"), 0, {":12: warning: a backslash"}},
        {"A1031.lng",
         cleanBut(12, "IDD_Options_B1 = Zur\xC3\xBC"),
         0,
         {"A1031.lng: warning: the texts look like UTF-8"}},
        {"A1031.lng", cleanBut(12, "IDD_Options_B1 = Zur\xFC"), 0, {"warnings: 0"}},
        {"A1031.lng", cleanBut(12, "IDD_Options_B1 ="), 1, {"A1031.lng:12: the text is empty"}},
        {"A1031.lng",
         cleanBut(12, "IDD_Options_B1 = A\\nB"),
         0,
         {"A1031.lng:12: warning: the text holds a control", "warnings: 1\n"}},
        {"A1031.lng", cleanBut(12, "IDD_Options_B1 = Bandfilter 1"), 0, {"12: warning: 'Bandfilter 1' takes about"}},
        {"A1031.lng", cleanBut(11, "IDD_Options_Gain = 12345678901"), 0, {"11: warning:", "its place has 60\n"}},
        {"A1031.lng", cleanBut(23, "MSGBOX_HELP = &123456789012"), 0, {"warnings: 0"}},
        {"A1031.lng", cleanBut(3, "IDS_DB = decibel"), 0, {"A1031.lng:3: warning: '+12.0 decibel' takes about"}},
        {"A1031.lng", cleanBut(3, "IDS_DB = 123456789012345678901"), 0, {"faults: 0, warnings: 1\n"}},
        {"A1031.lng", cleanBut(3, "IDS_DB = 1234567890123456789012"), 1, {"A1031.lng:3: the unit makes", "28 bytes"}},
        {"A1049.lng", cleanBut(3, "IDS_DB = \xE4\xC1\xE4\xC1\xE4\xC1\xE4\xC1\xE4\xC1\xE4", "1251"), 1, {"28 bytes"}},
        {"A1031.lng", textOf(CleanLines) + "[Parametric Equalizer]\nIDS_dBx = 1\n", 0, {":29: warning: the library"}},
        {"A1031.lng", textOf(CleanLines) + "<ACCEL VK_F5> = <accel alt 7>\n", 0, {"faults: 0, warnings: 0"}},
        {"A1031.lng",
         textOf(CleanLines) + "<ACCEL VK_F5> = <ACCEL F5>\n<ACCEL A> = B\n<ACCEL B> = <CODEPAGE 1252>\n",
         1,
         {"A1031.lng:28: '<ACCEL F5>' cannot be the new accelerator: Unknown identifier 'F5' in accelerator "
          "definition.",
          "A1031.lng:29: 'B' cannot", "A1031.lng:30: '<CODEPAGE 1252>' cannot"}},
        {"A1031.lng", textOf(CleanLines) + "[Other]\nIDS_DB =\n", 0, {"faults: 0, warnings: 0"}},
        {"A1031.lng",
         cleanBut(3, "[Other]\nIDS_DB = dB\n[Parametric Equalizer]"),
         1,
         {"IDS_DB is missing", "faults: 1,"}},
        {"A1025.lng", cleanBut(3, "IDS_DB = dB", "709"), 1, {"A1025.lng:3: Call to 'MultiByteToWideChar()' returned"}},
        {"Shared.lng", "[Shared]\na = b\n", 0, {"Shared.lng: warning: the name"}},
        {"A1031.lng", "\xFF\xFE[", 1, {"A1031.lng: no_unicode_file_support"}},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.contents);
        write(row.file, row.contents);
        const Outcome outcome = run(row.file);
        EXPECT_EQ(outcome.exitCode, row.exitCode) << outcome.output;
        expectInOrder(outcome.output, row.output);
    }
}

TEST_F(LngcheckCommand, GoesOnToTheNextFileAndTakesFolders) {
    write("set/A1031.lng", "nonsense\n");
    write("set/B1036.LNG", textOf(CleanLines));
    write("set/C1036.txt", "nonsense\n");
    const Outcome outcome = run("missing1031.lng set");
    EXPECT_EQ(outcome.exitCode, 1);
    expectInOrder(outcome.output, {"missing1031.lng: Open of file 'missing1031.lng' failed.\n",
                                   "set/A1031.lng:1: equal", "files: 3, faults: 2,"});
}

TEST_F(LngcheckCommand, CountsAKeyOfAnyFileOfTheLanguage) {
    const auto split = CleanLines.begin() + 19;
    write("A1031.lng", textOf({CleanLines.begin(), split}));
    write("B1031.lng", textOf({split, CleanLines.end()}));
    EXPECT_EQ(run("A1031.lng B1031.lng").exitCode, 0);
    EXPECT_EQ(run("A1031.lng").exitCode, 1);
}

TEST_F(LngcheckCommand, LetsWarningsFailWhenStrict) {
    write("A1031.lng", cleanBut(12, "IDD_Options_B1 = Bandfilter 1"));
    EXPECT_EQ(run("A1031.lng").exitCode, 0);
    EXPECT_EQ(run("--strict A1031.lng").exitCode, 1);
}

TEST_F(LngcheckCommand, ComparesWithAReference) {
    write("A1033.lng", textOf(CleanLines) + "[Other]\nExtra = 1\n<ACCEL A> = <ACCEL B>\n");
    write("A1031.lng", cleanBut(12, ""));
    const Outcome outcome = run("--reference A1033.lng A1031.lng ./A1033.lng");
    EXPECT_EQ(outcome.exitCode, 1);
    expectInOrder(outcome.output,
                  {"A1031.lng: the key Extra of [Other] is missing, which A1033.lng has",
                   "A1031.lng: the key ACCEL_0x41 of [Other] is missing", "note: the same as in A1033.lng",
                   "IDD_Options_Gain, IDD_Options_B2,", "faults: 3,"});
    EXPECT_EQ(outcome.output.find("A1033.lng: note"), std::string::npos) << outcome.output;
    write("bad1033.lng", "nonsense");
    EXPECT_EQ(run("--reference bad1033.lng A1031.lng").exitCode, 1);
}

TEST_F(LngcheckCommand, ShowsTheOrderOfReadingAndWhereAKeyIsTakenFrom) {
    const std::string head = "[Parametric Equalizer]\n";
    write("Release/A1031.lng", head + "[Shared]\nIDS_Hz = shared\n");
    write("Release/A1036.lng", head + "IDS_DB = second\nIDS_Hz = own\n<ACCEL A> = <ACCEL B>\n");
    write("Release/A1033.lng", head + "IDS_DB = third\n[Shared]\nIDS_DB = fourth\n");
    write("Release/A12.lng", head + "ids_db = primary\n");
    write("Release/A1040.lng", head + "IDS_DB = never\n");
    write("A1031.lng", head + "IDS_DB = parent\n");
    const Outcome outcome = run("--override 1031 --system 1036 --explain '{IDS_DB}' --explain IDS_Hz --explain "
                                "ACCEL_0x41 --explain no Release");
    EXPECT_EQ(outcome.exitCode, 1) << "the files are incomplete";
    expectInOrder(outcome.output, {"order of reading in " + path("Release") + ":\n",
                                   "language override, 1031: A1031.lng\n", "system's language, 1036: A1036.lng\n",
                                   "its primary language, 12: A12.lng\n", "English, 1033: A1033.lng\n",
                                   "order of reading in " + path("").substr(0, path("").size() - 1) + ":\n",
                                   "1031: A1031.lng\n", "1036: nothing new\n"});
    expectInOrder(outcome.output,
                  {"IDS_DB:\n", "taken from " + path("Release/A1036.lng:2") + " [Parametric Equalizer] 'second'\n",
                   "A12.lng:2", "A1033.lng:2", "A1031.lng:2", "A1033.lng:4", "IDS_Hz:\n",
                   "taken from " + path("Release/A1036.lng:3"), "ignored:   " + path("Release/A1031.lng:3"),
                   "ACCEL_0x41:\n", "A1036.lng:4", "no:\n", "in no file that is read"});
    EXPECT_EQ(outcome.output.find("'never'"), std::string::npos);

    std::filesystem::rename(path("Release"), path("plain"));
    const Outcome english = run("--override 0 --system 1033 plain");
    expectInOrder(english.output, {"override, none: nothing new", "1033: A1033.lng\n", "language, 9: nothing new\n",
                                   "English, 1033: nothing new\n"});
    EXPECT_EQ(english.output.find("override,"), english.output.rfind("override,")) << "no second folder";

    write("plain/B1036.lng", "nonsense\n");
    const Outcome broken = run("--override 0 --system 1036 --explain IDS_DB plain");
    expectInOrder(broken.output, {"A1036.lng, B1036.lng\n", "B1036.lng stops the library"});
    EXPECT_EQ(broken.output.find("taken from"), std::string::npos);
    write("plain/A1025.lng", "<CODEPAGE 709>\n[Other]\na = b\n");
    expectInOrder(run("--override 1025 --system 0 plain").output, {"A1025.lng stops the library"});
}

TEST_F(LngcheckCommand, WritesAPseudoLocalisedFileThatIsReadable) {
    write("A1033.lng", cleanBut(12, "IDD_Options_B1 = \\x5Cn\\t\xFC"));
    ASSERT_EQ(run("--reference A1033.lng --pseudo P1031.lng").exitCode, 0);
    const std::string pseudo = contents("P1031.lng");
    expectInOrder(pseudo, {"<CODEPAGE 1252>\n", "\n[Parametric Equalizer]\n",
                           "IDS_DB = [\xF0"
                           "B~]\n",
                           "IDD_Options_Gain = [G\xE5\xEE\xF1~~]\n", "IDD_Options_B1 = [\\x5C\xF1\\x09\xFC~~]\n",
                           "\n[Shared]\n", "PRSHT_APPLY_NOW = [&Appl\xFD~~]\n"});
    expectInOrder(run("P1031.lng").output, {"faults: 0,"});

    write("A1049.lng", cleanBut(12, "IDD_Options_B1 = \xCF", "1251"));
    EXPECT_EQ(run("--reference A1049.lng --pseudo Q1031.lng").exitCode, 1);
    EXPECT_FALSE(std::filesystem::exists(path("Q1031.lng")));
}

TEST_F(LngcheckCommand, RefusesBadUsage) {
    write("A1033.lng", textOf(CleanLines));
    for (const char* const arguments :
         {"", "--unknown A1033.lng", "--override 1031 A1033.lng", "--explain IDS_DB A1033.lng .", "--override x .",
          "--override 65536 .", "--pseudo P1033.lng", "--reference A1033.lng --pseudo P1041.lng",
          "--reference A1033.lng --pseudo P.lng"}) {
        SCOPED_TRACE(arguments);
        EXPECT_EQ(run(arguments).exitCode, 2);
    }
    EXPECT_EQ(run("--help").exitCode, 0);
}

} // namespace
