#include "tests/support/CommandTest.h"

#include <sstream>
#include <vector>

namespace {

/// A file without faults: line 3 is IDS_DB, 11 IDD_Options_Gain, 12 IDD_Options_B1, 23 MSGBOX_HELP.
const std::string Clean = "<CODEPAGE 1252>\n[Parametric Equalizer]\n"
                          "IDS_DB = dB\nIDS_Hz = Hz\nIDS_kHz = kHz\nIDD_Options_Q = Q\nIDD_Options_20KHz = 20 kHz\n"
                          "IDD_Options_Freq = Frequency\nIDD_Options_20Hz = 20 Hz\nIDD_Options_p10dB = +10 dB\n"
                          "IDD_Options_Gain = Gain\nIDD_Options_B1 = Band 1\nIDD_Options_B2 = Band 2\n"
                          "IDD_Options_B3 = Band 3\nIDD_Options_B4 = Band 4\nIDD_Options_m10dB = -10 dB\n"
                          "IDD_Options_Master = Master\nIDD_Options_p12dB = +12 dB\nIDD_Options_m12dB = -12 dB\n"
                          "[Shared]\nMSGBOX_OK = OK\nMSGBOX_CANCEL = Cancel\nMSGBOX_HELP = Help\n"
                          "PRSHT_APPLY_NOW = &Apply\nPRSHT_WIZBACK = < &Back\nPRSHT_WIZNEXT = &Next >\n"
                          "PRSHT_WIZFINISH = &Finish\n";

/// The clean file with another text in one line.
std::string cleanBut(int number, const std::string& line, const std::string& codepage = "1252") {
    std::istringstream clean(Clean);
    std::string text;
    std::string old;
    for (int i = 1; std::getline(clean, old); ++i)
        text += (i == number ? line : i == 1 ? "<CODEPAGE " + codepage + ">" : old) + "\n";
    return text;
}

class LngcheckCommand : public CommandTest {
protected:
    LngcheckCommand() : CommandTest(EQ_LNGCHECK_PATH) {}

    /// Expects the texts in what a run says, in this order.
    void expectRun(const std::string& arguments, int exitCode, const std::vector<std::string>& texts) const {
        const Outcome outcome = run(arguments + " 2>&1");
        EXPECT_EQ(outcome.exitCode, exitCode) << outcome.out;
        expectInOrder(outcome.out, texts);
    }
    static void expectInOrder(const std::string& output, const std::vector<std::string>& texts) {
        std::size_t at = 0;
        for (const std::string& text : texts) {
            const std::size_t found = output.find(text, at);
            ASSERT_NE(found, std::string::npos) << "no '" << text << "' in, or not in this order:\n" << output;
            at = found + text.size();
        }
    }
};

TEST_F(LngcheckCommand, TellsFaultsAndWarningsWithFileAndLine) {
    struct Case {
        std::string contents;
        int exitCode;
        std::vector<std::string> output;
        std::string file = "A1031.lng";
    };
    const Case cases[] = {
        {"", 1, {"A1031.lng: the key IDS_DB is missing\n", "PRSHT_WIZFINISH is missing\n", "faults: 24,"}},
        {cleanBut(3, "IDS_DB = dB\n<FOO>\n<CODEPAGE 932>\nx"),
         1,
         {"A1031.lng:4: Invalid tag '<FOO>':Tag type 'FOO' is unknown.\n",
          "A1031.lng:5: Specified codepage does not appear to match language of file.\n", "A1031.lng:6: equal",
          "faults: 3,"}},
        {cleanBut(4, "IDS_Hz = Hz\nids_hz = H"), 1, {"A1031.lng:5: ids_hz is defined in line 4"}},
        {cleanBut(1, "// none\n\nIDS_DB = x"), 1, {"A1031.lng:3: stands in front of the first"}},
        {cleanBut(1, "// none") + "a = \\xFC\n", 1, {"A1031.lng:28: the value is not ASCII"}},
        {cleanBut(12, "IDD_Options_B1 = \x83", "932"), 1, {":12: the value is no text of code page 932"}, "A1041.lng"},
        {cleanBut(12, "IDD_Options_B1 = \x83\x5C", "932"), 0, {":12: warning: a backslash"}, "A1041.lng"},
        {cleanBut(12, "IDD_Options_B1 = Zur\xC3\xBC"), 0, {"A1031.lng: warning: the texts look like UTF-8"}},
        {cleanBut(12, "IDD_Options_B1 = Zur\xFC"), 0, {"warnings: 0"}},
        {cleanBut(12, "IDD_Options_B1 ="), 1, {"A1031.lng:12: the text is empty"}},
        {cleanBut(12, "IDD_Options_B1 = A\\nB"), 0, {"A1031.lng:12: warning: the text holds a control"}},
        {cleanBut(11, "IDD_Options_Gain = 12345678901"), 0, {"11: warning:", "its place has 60\n"}},
        {cleanBut(3, "IDS_DB = decibel"), 0, {"A1031.lng:3: warning: '+12.0 decibel' takes about"}},
        {cleanBut(3, "IDS_DB = 123456789012345678901"), 0, {"faults: 0, warnings: 1\n"}},
        {cleanBut(3, "IDS_DB = 1234567890123456789012"), 1, {"A1031.lng:3: the unit makes", "28 bytes"}},
        {cleanBut(3, "IDS_DB = \xE4\xC1\xE4\xC1\xE4\xC1\xE4\xC1\xE4\xC1\xE4", "1251"), 1, {"28 bytes"}, "A1049.lng"},
        {cleanBut(3, "IDS_DB = \x83\x66\x83\x56", "932"), 0, {":3: warning: the unit does not show"}, "A1041.lng"},
        {Clean + "[Parametric Equalizer]\nIDS_dBx = 1\n", 0, {":29: warning: the library"}},
        {Clean + "<ACCEL VK_F5> = <accel alt 7>\n<ACCEL F1> = <ACCEL F5>\n<ACCEL B> = <CODEPAGE 1252>\n",
         1,
         {"A1031.lng:29: Invalid tag '<ACCEL F1>'", "A1031.lng:30: '<CODEPAGE 1252>' cannot", "faults: 2,"}},
        {cleanBut(3, "[Other]\nIDS_DB = dB\n[Parametric Equalizer]"), 1, {"IDS_DB is missing", "faults: 1,"}},
        {cleanBut(3, "IDS_DB = dB", "709"), 1, {"A1025.lng:3: Call to 'MultiByteToWideChar()' returned"}, "A1025.lng"},
        {"[Shared]\na = b\n", 0, {"Shared.lng: warning: the name"}, "Shared.lng"},
        {"\xFF\xFE[", 1, {"A1031.lng: no_unicode_file_support"}},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.contents);
        folder.write(row.file, row.contents);
        expectRun(row.file, row.exitCode, row.output);
        expectRun("--strict " + row.file, row.output[0] != "warnings: 0", row.output);
    }
}

TEST_F(LngcheckCommand, TakesFilesAndFoldersAndCountsAKeyOfAnyFileOfTheLanguage) {
    const std::size_t split = Clean.find("[Shared]");
    folder.write("set/A1031.lng", Clean.substr(0, split));
    folder.write("set/B1031.LNG", Clean.substr(split));
    folder.write("set/C1036.txt", "nonsense\n");
    folder.write("C1036.lng", "nonsense\n");
    expectRun("set", 0, {"files: 2, faults: 0, warnings: 0\n"});
    expectRun("set/A1031.lng", 1, {"MSGBOX_OK is missing"});
    expectRun("missing1031.lng C1036.lng set", 1,
              {"missing1031.lng: Open of file 'missing1031.lng' failed.\n", "C1036.lng:1: equal", "files: 4,"});
}

TEST_F(LngcheckCommand, ComparesWithAReference) {
    folder.write("A1033.lng", Clean + "[Other]\nExtra = 1\n<ACCEL A> = <ACCEL B>\n");
    folder.write("A1031.lng", cleanBut(12, ""));
    expectRun("--reference A1033.lng A1031.lng", 1,
              {"A1031.lng: the key Extra of [Other] is missing, which A1033.lng has",
               "A1031.lng: the key ACCEL_0x41 of [Other] is missing", "note: the same as in A1033.lng",
               "IDD_Options_Gain, IDD_Options_B2,", "faults: 3,"});
    folder.write("bad1033.lng", "nonsense");
    expectRun("--reference bad1033.lng A1033.lng", 1, {});
}

TEST_F(LngcheckCommand, ShowsTheOrderOfReadingAndWhereAKeyIsTakenFrom) {
    const std::string head = "[Parametric Equalizer]\n";
    folder.write("Release/A1031.lng", head + "[Shared]\nIDS_Hz = shared\n");
    folder.write("Release/A1036.lng", head + "IDS_DB = second\nIDS_Hz = own\n<ACCEL A> = <ACCEL B>\n");
    folder.write("Release/A1033.lng", head + "IDS_DB = third\n[Shared]\nIDS_DB = fourth\n");
    folder.write("Release/A12.lng", head + "ids_db = primary\n");
    folder.write("Release/A1040.lng", head + "IDS_DB = never\n");
    folder.write("A1031.lng", head + "IDS_DB = parent\n");
    expectRun("--override 1031 --system 1036 --explain '{IDS_DB}' --explain IDS_Hz --explain no Release", 1,
              {"order of reading in " + path("Release") + ":\n", "language override, 1031: A1031.lng\n",
               "system's language, 1036: A1036.lng\n", "its primary language, 12: A12.lng\n",
               "English, 1033: A1033.lng\n", "order of reading in " + folder.path().string() + ":\n",
               "1031: A1031.lng\n", "1036: nothing new\n", "IDS_DB:\n",
               "taken from " + path("Release/A1036.lng:2") + " [Parametric Equalizer] 'second'\n", "A12.lng:2",
               "A1033.lng:2", "A1031.lng:2", "A1033.lng:4", "IDS_Hz:\n", "taken from " + path("Release/A1036.lng:3"),
               "ignored:   " + path("Release/A1031.lng:3"), "no:\n", "in no file that is read"});

    std::filesystem::rename(path("Release"), path("plain"));
    folder.write("plain/B1036.lng", "nonsense\n");
    folder.write("plain/A1025.lng", "<CODEPAGE 709>\n[Other]\na = b\n");
    expectRun("--override 0 --system 1033 plain", 1, {"override, none: nothing new", "1033: A1033.lng\n"});
    EXPECT_EQ(run("--system 1033 --override 0 plain").out.find("in " + folder.path().string() + ":"),
              std::string::npos);
    expectRun("--override 0 --system 1036 plain", 1, {"A1036.lng, B1036.lng\n", "B1036.lng stops the library"});
    expectRun("--override 1025 --system 0 plain", 1, {"A1025.lng stops the library"});
}

TEST_F(LngcheckCommand, WritesAPseudoLocalisedFileThatIsReadable) {
    folder.write("A1033.lng", cleanBut(12, "IDD_Options_B1 = \\x5Cn\\t\xFC"));
    expectRun("--reference A1033.lng --pseudo P1031.lng", 0, {});
    expectInOrder(contents("P1031.lng"),
                  {"<CODEPAGE 1252>\n\n[Parametric Equalizer]\n", "IDS_DB = [\xF0\x42~]\n",
                   "IDD_Options_B1 = [\\x5C\xF1\\x09\xFC~~]\n", "\n[Shared]\n", "PRSHT_APPLY_NOW = [&Appl\xFD~~]\n"});
    expectRun("P1031.lng", 0, {"faults: 0,"});
    folder.write("A1049.lng", cleanBut(12, "IDD_Options_B1 = \xCF", "1251"));
    expectRun("--reference A1049.lng --pseudo Q1031.lng", 1, {});
    EXPECT_FALSE(names().contains("Q1031.lng"));
}

TEST_F(LngcheckCommand, RefusesBadUsage) {
    folder.write("A1033.lng", Clean);
    for (const char* const arguments :
         {"", "--unknown A1033.lng", "--override 1031 A1033.lng", "--explain IDS_DB A1033.lng .", "--override 65536 .",
          "--pseudo P1033.lng", "--reference A1033.lng --pseudo P1041.lng", "--reference A1033.lng --pseudo P.lng"})
        EXPECT_EQ(run(arguments).exitCode, 2) << arguments;
}

} // namespace
