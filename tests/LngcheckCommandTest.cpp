#include "tests/support/LngcheckCommand.h"

#include <tuple>
#include <utility>
#include <vector>

namespace eq {

namespace {

TEST_F(LngcheckCommand, ReportsFaultsAndWarningsWithFileAndLine) {
    const std::pair<const char*, const char*> lines[] = {
        {"IDS_DB = x", "this line is before the first [context]"},
        {"[Parametric Equalizer]", ""},
        {"IDD_Options_Q = \xB1", "the value is not ASCII"},
        {"<CODEPAGE 932>", ""},
        {"<CODEPAGE 1252>", "Specified codepage does not appear to match language of file.\n"},
        {"<FOO>", "Invalid tag '<FOO>':Tag type 'FOO' is unknown.\n"},
        {"<F\x1B[2J\x9B>", "Invalid tag '<F\\x1B[2J\\x9B>'"},
        {"nonsense", "equal"},
        {"IDD_Options_B1 = \x83", "the value is not a text in code page 932"},
        {"IDD_Options_B2 = \x83\x5C", "warning: a backslash"},
        {"IDD_Options_B3 =", "the text is empty"},
        {"idd_options_b3 = B", "idd_options_b3 is defined in line 11"},
        {"IDD_Options_B4 = A\\nB", "warning: the text holds a control"},
        // Greek, Cyrillic, wide Cyrillic, Chinese, full-width and half-width letters
        {"IDD_Options_Gain = 1&2345678 90l\x83\x9F\x83\xBF\x84\x40\x84\x70\x84\x47\x84\x77\x88\xEA\x82\x60\xB1",
         "warning: '1&2345678 90l\u0391\u03B1\u0410\u0430\u0416\u0436\u4E00\uFF21\uFF71' needs about 138 pixels"},
        {"IDS_DB = 123456789012345678901", "warning: '+12.0 1"},
        {"IDS_Hz = 12345678901234567890123", "the read-out with this unit has 28 bytes, but only 27 are shown\n"},
        {"IDS_kHz = \xC3\xDE\xBC\xC3\xDE\xBC\xC3\xDE", "warning: the unit is not shown"}, // a read-out has 29 bytes
        {"IDS_dBx = 1", "warning: the library does not look up"},
        {"<ACCEL VK_F5> = <accel alt 7>", ""},
        {"<ACCEL F1> = <ACCEL F5>", "Invalid tag '<ACCEL F1>'"},
        {"<ACCEL B> = <CODEPAGE 932>", "'<CODEPAGE 932>' cannot"},
        {"[Other]", ""},
        {"MSGBOX_OK = x", ""},
    };
    std::string contents;
    std::vector<std::string> findings = {"A1041.lng: the key IDD_Options_20KHz is missing\n",
                                         "A1041.lng: the key MSGBOX_OK is missing\n"};
    for (int number = 1; const auto& [line, finding] : lines) {
        contents += std::string(line) + "\n";
        if (*finding != '\0') findings.push_back("A1041.lng:" + std::to_string(number) + ": " + finding);
        ++number;
    }
    findings.emplace_back("files: 1, faults: 28, warnings: 13\n");
    folder.write("A1041.lng", contents);
    expectRun("A1041.lng", 1, findings);
}

TEST_F(LngcheckCommand, ReportsFaultsOfWholeFiles) {
    const std::string german = shipped("1031");
    const std::tuple<const char*, std::string, int, const char*> rows[] = {
        {"A1031.lng", german + "[A]\na = Zur\xFC\n", 0, "faults: 0, warnings: 0\n"},
        {"A1031.lng", "[Shared]", 1, "faults: 24, warnings: 0\n"},
        {"A1031.lng", "\xFF\xFE[", 1, "the file is in UTF-16, which the library does not read\n"},
        {"A1031.lng", "<CODEPAGE 1252>\n[A]\na = Zur\xC3\xBC\n", 1, "A1031.lng: warning: the texts look like UTF-8"},
        {"A1025.lng", "<CODEPAGE 709>\n[Other]\na = b\n", 1, "A1025.lng:3: Call to 'MultiByteToWideChar()' returned"},
        {"A10.lng", "[Shared]\nMSGBOX_OK = A\n", 0, "A10.lng: note: these texts are shown in English: IDS_DB, IDS_Hz,"},
        {"Shared.lng", "[Shared]\nIDD_Options_Freq = Frequency\n", 0, "Shared.lng: warning: the name"},
    };
    for (const auto& [file, contents, exitCode, text] : rows) {
        folder.write(file, contents);
        expectRun(file, exitCode, {text});
    }
    expectRun("--strict Shared.lng", 1, {"faults: 0, warnings: 1\n"});
}

TEST_F(LngcheckCommand, AcceptsFilesAndFoldersAndFindsAKeyInAnyFileOfTheLanguage) {
    const std::string german = shipped("1031");
    const std::size_t split = german.find("[Shared]");
    folder.write("set/A1031.lng", german.substr(0, split));
    folder.write("set/B1031.LNG", "<CODEPAGE 1252>\n" + german.substr(split));
    folder.write("set/C1036.txt", "nonsense\n");
    folder.write("C1036.lng", "nonsense\n");
    expectRun("set", 0, {"files: 2, faults: 0, warnings: 0\n"});
    expectRun("set/A1031.lng", 1, {"MSGBOX_OK is missing"});
    expectRun("missing1031.lng C1036.lng set", 1,
              {"missing1031.lng: Open of file 'missing1031.lng' failed.\n", "C1036.lng:1: equal", "files: 4,"});
}

TEST_F(LngcheckCommand, ComparesWithAReference) {
    folder.write("A1033.lng", clean + "[Other]\nExtra = 1\n<ACCEL A> = <ACCEL B>\n");
    folder.write("A1031.lng", "[Parametric Equalizer]\nIDD_Options_B1 = other\n" + clean);
    expectRun("--reference A1033.lng A1031.lng", 1,
              {"A1031.lng: the key Extra of [Other] is missing, but A1033.lng has it",
               "A1031.lng: the key ACCEL_0x41 of [Other] is missing", "note: the same as in A1033.lng",
               "IDD_Options_m10dB, IDD_Options_B2,", "faults: 3,"});
    folder.write("A7.lng", "[Shared]\nMSGBOX_OK = A\n");
    expectRun("--reference A1033.lng A7.lng", 0, {"files: 1, faults: 0,"});
    folder.write("bad1033.lng", "nonsense");
    expectRun("--reference bad1033.lng A1033.lng", 1, {});
}

TEST_F(LngcheckCommand, ShowsTheOrderOfReadingAndTheFileThatDefinesAKey) {
    folder.write("Release/A1036.lng", "[Shared]\nIDS_DB = shared\n[Parametric Equalizer]\nIDS_Hz = own\n");
    folder.write("Release/A12.lng", "[Parametric Equalizer]\nids_db = primary\n");
    folder.write("A1036.lng", "[Parametric Equalizer]\nIDS_DB = parent\n");
    expectRun("--override 1031 --system 1036 --explain \" {IDS_DB} \" --explain no Release", 1,
              {"order of reading in " + path("Release") + ":\n", "language override, 1031: nothing new\n",
               "system's language, 1036: A1036.lng\n", "its primary language, 12: A12.lng\n",
               "English, 1033: nothing new\n", "order of reading in " + folder.path().string() + ":\n",
               "1036: A1036.lng\n", "IDS_DB:\n",
               "taken from " + path("Release/A12.lng:2") + " [Parametric Equalizer] 'primary'\n",
               "ignored:   " + path("A1036.lng:2"), "ignored:   " + path("Release/A1036.lng:2") + " [Shared] 'shared'",
               "no:\n", "in no file that is read"});

    // The parent of a folder is read only for a build folder such as Release. A broken file stops the library.
    folder.write("plain/A1033.lng", "[Shared]\n");
    folder.write("plain/B1033.lng", "nonsense\n");
    expectRun("--override 0 --system 1033 plain", 1,
              {"order of reading in " + path("plain") + ":\n  language override, none: nothing new\n",
               "  system's language, 1033: A1033.lng, B1033.lng\n  its primary language, 9: nothing new\n"
               "  English, 1033: nothing new\n" +
                   path("plain/B1033.lng") + " stops the library",
               "does not load with it. Its first fault:\n    line 1: equal"});
}

TEST_F(LngcheckCommand, WritesAReadablePseudoLocalisedFile) {
    folder.write("A1033.lng", clean + "[Other]\na = \\x5Cn\\t\xFC\n");
    expectRun("--reference A1033.lng --pseudo new/P1031.lng", 0, {});
    expectInOrder(contents("new/P1031.lng"),
                  {"<CODEPAGE 1252>\n\n[Parametric Equalizer]\n", "IDS_DB = [\xF0\x42~]\n", "\n[Shared]\n",
                   "PRSHT_APPLY_NOW = [&Appl\xFD~~]\n", "\n[Other]\na = [\\x5C\xF1\\x09\xFC~~]\n"});
    expectRun("new/P1031.lng", 0, {"faults: 0,"});
    folder.write("A1049.lng", "<CODEPAGE 1251>\n[Other]\na = \xCF\n");
    expectRun("--reference A1049.lng --pseudo Q1031.lng", 1, {});
    EXPECT_FALSE(files().contains("Q1031.lng"));
}

TEST_F(LngcheckCommand, RefusesBadUsage) {
    expectRun("--version", 0, {"lngcheck 2."});
    expectRun("--reference= .", 2, {"the value is empty"});
    folder.write("A1033.lng", clean);
    for (const char* const arguments :
         {"", "--unknown A1033.lng", "--json --override 0 .", "--init 70000 A70000.lng", "--override 1031 A1033.lng",
          "--explain IDS_DB A1033.lng .", "--override 65536 .", "--pseudo P1033.lng",
          "--reference A1033.lng --pseudo P1041.lng", "--reference A1033.lng --pseudo P.lng"})
        EXPECT_EQ(run(arguments).exitCode, 2) << arguments;
}

} // namespace

} // namespace eq
