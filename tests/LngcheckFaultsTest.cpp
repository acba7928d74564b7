// Plants faults of translators in shipped files, and checks files that no translator would write.

#include "tests/support/LanguageFormat.h"
#include "tests/support/LngcheckCommand.h"

#include <algorithm>
#include <random>
#include <set>
#include <sstream>
#include <tuple>

namespace eq {

namespace {

using LngcheckFaults = LngcheckCommand;

struct Planted {
    std::string from; ///< the bytes that are replaced; the finding must name their line
    std::string to, text, hint = "";
};

// The language id of the shipped file, the severity (empty for a fault), and the changes.
// clang-format off
const std::tuple<std::string, std::string, std::vector<Planted>> PlantedFaults[] = {
    {"1031", "warning: ", {{"&Weiter", "Weiter", "the mnemonic is lost", "English is '&Next >'"},
        {"&Weiter", "Zu&weiter&", "a '&' before a blank or at the end is not shown"},
        {"&Weiter", "&Zeiter", "the mnemonic 'z' of PRSHT_WIZNEXT is also that of PRSHT_WIZBACK in line 44"},
        {"&Weiter", "We&\xEDter", "the mnemonic '\xC3\xAD' is not a letter on a keyboard of the language 1031 (German)"},
        {"&Weiter", "&&Weiter", "'&&' shows one '&'", "Write a single &."},
        {"Gesamt", "M&S", "the '&' is not shown", "Write &&"}, {"&Weiter", "&We&iter", "two letters have a '&'"},
        {"+10 dB", "+12 dB", "the text has +12, and English has +10"},
        {"-10 dB", "10 dB", "the text has 10, and English has -10"},
        {"20 kHz", "20 khz", "the label has the unit 'khz', and the read-outs have 'kHz' (IDS_kHz in line 11)"},
        {"Verst\xE4rkung", "Frequenz", "IDD_Options_Gain has the same text as IDD_Options_Freq in line 18"},
        {"Hilfe", "Abbrechen", "MSGBOX_HELP has the same text as MSGBOX_CANCEL in line 41"},
        {"Band 3", "Band 2", "IDD_Options_B3 has the same text as IDD_Options_B2 in line 28"},
        {"Frequenz", "Frequency", "the text 'Frequency' is English"}, {"Band 2", "Band  2", "has two blanks together"},
        {"= Gesamt", "= \\x20Gesamt", "begins with a blank"}, {"= Gesamt", "= Gesamt\xA0", "ends with a blank"},
        {"&Weiter >", "&Weiter", "lacks the '>' at its end"}, {"< &Zur", "&Zur", "lacks the '<' at its start"},
        {"Gesamt", "5 \x80\\x20x", "a backslash, or a letter whose second byte"},
        {"Gesamt", "\x84Gesamt", "a quotation mark has no partner"}, {"Gesamt", "{Gesamt", "'{' and '}' are not a pair"},
        {"stellen", "stellen\x1A", "a byte 0x1A is here, at which Windows ends the file"},
        {"MSGBOX_CANCEL", "ZZMSGBOX_CANCL", "the library does not look up the key", "Did you mean MSGBOX_CANCEL?"},
        {"IDD_Options_B3", "IDD_Options_B5", "look up the key 'IDD_Options_B5'", "Did you mean IDD_Options_B1?"}}},
    {"1031", "", {{"= Gesamt", "= Ges\x1A" "amt", "a byte 0x1A is here: Windows ends the file there"},
        {"[Parametric Equalizer]", "[Parametric Equaliser]", "the library does not read [Parametric Equaliser]",
         "Write [Parametric Equalizer]"},
        {"[Shared]", "[Shared] // buttons", "the library does not read [Shared] // buttons]", "Write [Shared]"},
        {"[Parametric Equalizer]", "[German]", "the library does not read [German]"},
        {"1252>", "932>", "Specified codepage", "1031 (German), is the language. Code page 932"},
        {"1252>", "x>", "Invalid tag '<CODEPAGE x>'", "Write <CODEPAGE 1252>: one number"},
        {"1252>", "1252> a =", "Unexpected text", "Write <CODEPAGE 1252>: one number"},
        {"IDS_DB =", "IDS_DB", "equal (=) expected.", "This line needs key = text. Comments begin with //."},
        {"// German", "\xEF\xBB\xBF//", "equal (=) expected.", "UTF-8 mark, which the library reads as a part"},
        {"// Units", "<ACCEL F5> = <ACCEL A>\r\n//", "Invalid tag '<ACCEL F5>'", "Keys are named VK_F5"},
        {"Band 1\r\n", "Band 1\r", "a line end of old Macs (CR) is in this line"}}},
    {"10", "", {{"// Units", "<CODEPAGE 1252>\r\n//", "Specified codepage does not", "must have no <CODEPAGE> tag"}}},
    {"1032", "warning: ", {{"\xC6\xFE\xED\xE7 3", "Z\xFE\xED\xE7 3", "is Greek, in a word of Latin letters"}}},
    {"1041", "warning: ", {{"20 kHz", "2 kHz", "the text has 2, and English has 20"},
        {"(&A)", "&A)", "'(' and ')' are not a pair"}}},
    {"1049", "warning: ", {{"= &\xC4", "= \xC4&,", "the mnemonic ',' is not a letter"},
        {"\xE4\xC1\r", "\xE4" "B\r", "the letter 'B' is Latin, in a word of Cyrillic letters"}}},
    {"1049", "", {{"\xE4\xC1\r", "\xE4\xC1\xE4\xC1\xE4\xC1\xE4\xC1\xE4\xC1\xE4\xC1\r",
        "the read-out with this unit has 30 bytes", "at most 21 bytes"}}},
};
// clang-format on

/// Returns the text with each wrapped hint joined into one line.
std::string unfolded(std::string text) {
    for (std::size_t at = text.find("\n    "); at != std::string::npos; at = text.find("\n    ", at + 1))
        text.replace(at, 5, " ");
    return text;
}

TEST_F(LngcheckFaults, FindsPlantedFaultsAtTheirLine) {
    for (const auto& [id, severity, faults] : PlantedFaults) {
        for (const auto& [from, to, text, hint] : faults) {
            std::string file = shipped(id);
            const std::size_t at = file.find(from);
            ASSERT_NE(at, std::string::npos) << from;
            file.replace(at, from.size(), to);
            const std::string name = "Equalizer" + id + ".lng";
            folder.write(name, file);
            const auto line = 1 + std::count(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(at), '\n');
            const std::string said = unfolded(expectRun("--strict --quiet " + name, 1));
            expectInOrder(said, {name + ":" + std::to_string(line) + ": " + severity, text, hint});
        }
    }
}

/// Returns the value of a member of a JSON object, up to its first escape.
std::string member(const std::string& object, const std::string& name) {
    const std::size_t at = object.find("\"" + name + "\": ") + name.size() + 4;
    const std::size_t first = object[at] == '"' ? at + 1 : at;
    return object.substr(first, object.find_first_of(object[at] == '"' ? "\"\\" : ",", first) - first);
}

/// Returns the name of the file of a finding, without its folder.
std::string fileName(const std::string& object) {
    const std::string path = object.substr(10, object.find("\", ") - 10);
    return path.substr(path.find_last_of("/\\") + 1);
}

TEST_F(LngcheckFaults, AcceptsChangesThatATranslatorMayMake) {
    // clang-format off
    const std::tuple<std::string, std::string, std::string> changes[] = {
        {"1031", "= &Weiter", "= Weit&er"}, {"1031", "&Zur", "Z&ur"}, {"1031", "Band 3", "Mitte"},
        {"1031", "Gesamt", "(G)"}, {"1031", "Gesamt", "\x84G\x93"}, {"1031", "Gesamt", "M && S"},
        {"1041", "20 kHz", "\x82\x51\x82\x4F kHz"},
        {"1041", "(&A)", "a(&A)"}, {"1031", "[Shared]", "[shared]"}, {"1031", "1252>", "1252 >"},
        {"1031", "MSGBOX_CANCEL", "msgbox_cancel"}, {"1031", "Frequenz", "nnnnnnnnnnnnl"}};
    // clang-format on
    for (const auto& [id, from, to] : changes) {
        std::string file = shipped(id);
        ASSERT_NE(file.find(from), std::string::npos) << from;
        folder.write("A" + id + ".lng", file.replace(file.find(from), from.size(), to));
        expectRun("--strict A" + id + ".lng", 0, {"faults: 0, warnings: 0\n"});
    }
}

TEST_F(LngcheckFaults, KnowsTheCaseAndTheAlphabetOfEachLetterOfACodePage) {
    // Language, code page, pairs of a capital letter and its small letter, and whether the letters are Latin.
    std::tuple<std::string, std::string, std::string, bool> pages[] = {
        {"1031", "1252", "\x8A\x9A\x8C\x9C\x8E\x9E\x9F\xFF", true},
        {"1045", "1250", "\x8A\x9A\x8C\x9C\x8D\x9D\x8E\x9E\x8F\x9F\xA3\xB3\xA5\xB9\xAA\xBA\xAF\xBF\xBC\xBE", true},
        {"1063", "1257", "\xA8\xB8\xAA\xBA\xAF\xBF", true},
        {"1049", "1251", "\x80\x90\x81\x83\x8A\x9A\x8F\x9F\xA1\xA2\xA3\xBC\xA5\xB4\xA8\xB8\xAA\xBA\xB2\xB3\xBD\xBE",
         false},
        {"1032", "1253", "", false},
    };
    std::map<std::string, std::string> expected; // the lines with a repeated text or, after M, with a mixed word
    for (auto& [language, codepage, pairs, isLatin] : pages) {
        const std::string start = "<CODEPAGE " + codepage + ">\n[Shared]\nIDD_Options_B1 = ";
        for (int c = 0xC0; c <= 0xDF; ++c) {
            const bool isGreek = c > 0xC0 && c < 0xDC && c != 0xD2;
            if (codepage == "1251" || (isLatin ? c != 0xD7 && c != 0xDF : isGreek))
                pairs += {static_cast<char>(c), static_cast<char>(c + 0x20)};
        }
        std::string capitals, small;
        for (std::size_t i = 0; i < pairs.size(); i += 2) {
            capitals += pairs[i];
            small += pairs[i + 1];
            if (isLatin) continue;
            const std::string name = "n" + std::to_string(i) + "x_" + language + ".lng";
            folder.write("letters/" + name, start + "xy" + pairs[i] + "\nIDD_Options_B2 = " + pairs[i + 1] + "yz\n");
            expected[name] = "M3M4";
        }
        const std::string latin = isLatin ? "a" : "";
        const std::string name = "case_" + language + ".lng";
        folder.write("letters/" + name, start + latin + capitals + "\nIDD_Options_B2 = " + latin + small +
                                            "\nIDD_Options_B3 = \xD7\nIDD_Options_B4 = \xF0\n");
        expected[name] = "4";
    }
    std::map<std::string, std::string> found;
    std::istringstream objects(run("--json --quiet letters").said);
    for (std::string object; std::getline(objects, object);) {
        const std::string text = member(object, "text");
        std::string& lines = found[fileName(object)];
        if (text.find("IDD_Options_B1 in") != std::string::npos) lines += member(object, "line");
        if (text.find("Latin") != std::string::npos) lines += "M" + member(object, "line");
    }
    for (const auto& [name, lines] : expected) EXPECT_EQ(found[name], lines) << name;
}

TEST_F(LngcheckFaults, ReportsOneCauseIfTheWholeFileIsWrong) {
    std::string wide;
    for (const char c : clean) wide += {c, '\0'};
    std::string mac = clean;
    std::ranges::replace(mac, '\n', '\r');
    std::string noLanguageFile;
    for (int i = 0; i < 1000; ++i) noLanguageFile += "some words\n";
    const std::pair<std::string, std::string> rows[] = {
        {wide, ": the file is in UTF-16 without a mark"},
        {mac, ": the line ends are those of old Macs"},
        {"", ": the file is empty"},
        {"// a\n", ": the file holds comments only"},
        {"\xFE\xFF" + wide, ": the file is in UTF-16, which"},
        {std::string(99, '\0'), ": the file is not a text"},
        {noLanguageFile, ":10: this does not seem to be a language file: 10 of the first 10 lines are wrong"},
        {clean.substr(clean.find("IDS_DB")), ":1: this line is before the first [context]"},
    };
    for (const auto& [contents, text] : rows) {
        folder.write("A1033.lng", contents);
        const std::string said = expectRun("A1033.lng", 1, {"A1033.lng" + text});
        EXPECT_LT(std::ranges::count(said, '\n'), 20) << said;
    }
}

TEST_F(LngcheckFaults, ExplainsFaultsOfFileNames) {
    for (const auto& [name, text, hint] :
         {std::tuple{"Eq2_1031.lng", "the name does not end in a language id", "Here the number is 2"},
          std::tuple{"A1234.lng", "Windows has no language 1234", "such as 1031"},
          std::tuple{"A66567.lng", "Windows has no language 66567", "such as 1031"}}) {
        folder.write(name, clean);
        expectInOrder(unfolded(run(name).said), {std::string(name) + ": warning: " + text, hint});
    }
}

// One run checks all files in one folder, so that this test also covers a large number of files.
TEST_F(LngcheckFaults, AgreesWithTheFormatsDescriptionForHostileFiles) {
#ifdef _WIN32
    constexpr int Files = 1000; // under Wine, each file takes long
#else
    constexpr int Files = 5000;
#endif
    std::mt19937 random(4711);
    std::map<std::string, std::set<oracle::Fault>> expected;
    std::size_t count = 0;
    for (int i = 0; i < Files; ++i) {
        std::string name;
        for (int rest = i + 26; rest > 0; rest /= 26) name += static_cast<char>('a' + rest % 26);
        name += oracle::endingOfName(random);
        const std::string file = oracle::hostileFile(random);
        folder.write("hostile/" + name, file);
        expected[name] = oracle::faultsOf(name, file);
        count += expected[name].size();
    }
    EXPECT_GT(count, Files);

    std::map<std::string, std::set<oracle::Fault>> found;
    std::istringstream objects(run("--json --quiet hostile").said);
    for (std::string object; std::getline(objects, object);) {
        const std::string text = member(object, "text");
        for (const char* const start : {"equal (=) expected", "Invalid tag", "Specified codepage", "Unexpected text"}) {
            if (text.starts_with(start))
                found[fileName(object)].insert({std::stoi(member(object, "line")), oracle::plainStart(text)});
        }
    }
    for (const auto& [name, faults] : expected) {
        ASSERT_EQ(found[name].size(), faults.size()) << name << "\n" << contents("hostile/" + name);
        EXPECT_TRUE(found[name] == faults) << name << "\n" << contents("hostile/" + name);
    }
}

TEST_F(LngcheckFaults, ChecksALineOfFiftyMegabytesQuickly) {
    std::string letters(50'000'000, 'x');
    folder.write("A1031.lng", "[Shared]\nMSGBOX_OK = " + letters + "\n" + letters + "\n<" + letters + ">\n");
#ifdef _WIN32
    const std::string limit;
#elif defined __SANITIZE_THREAD__
    const std::string limit = "ulimit -t 200;";
#else
    const std::string limit = "ulimit -t 20;";
#endif
    const std::string said = expectRun(
        "A1031.lng", 1, {"A1031.lng:2: warning: 'xxx", ":3: equal (=) expected.", ":4: Invalid tag '<xxx"}, limit);
    EXPECT_LT(said.size(), 10000U);
}

TEST_F(LngcheckFaults, ChecksAFileOnceIfItIsNamedRepeatedly) {
    folder.write("set/A1033.lng", clean);
    expectRun("set set/../set set/A1033.lng", 0, {"files: 1, "});
}

TEST_F(LngcheckFaults, AcceptsFileNamesOutsideTheCodePage) {
    std::ofstream(folder.path() / u8"G\u00F6\u0416\u6F22 1031.lng") << "nonsense";
    const std::string name = "G\xC3\xB6\xD0\x96\xE6\xBC\xA2 1031.lng";
    expectRun("\"" + name + "\"", 1, {name + ":1: equal (=) expected."});
    expectRun("--init 1033 \"new " + name + "\"", 2, {});
    expectRun("--init 1031 \"new " + name + "\"", 0, {});
    EXPECT_TRUE(std::filesystem::exists(folder.path() / u8"new G\u00F6\u0416\u6F22 1031.lng"));
}

#ifndef _WIN32
TEST_F(LngcheckFaults, ReportsTheSystemsReasonForUnreadableFiles) {
    const std::string links = "ln -s B1031.lng B1031.lng; ln -s . C1031.lng; ln -s missing D1031.lng; ";
    const std::string prepare =
        "mkdir set; cd set; mkfifo A1031.lng; " + links +
        "ln -s /proc/self/mem E1031.lng; printf '[\\033[2J\\n\\033]0;x\\007' > F1031.lng; cd ..;";
    const std::string said = expectRun(
        "set", 1,
        {"set/A1031.lng: Open of file 'set/A1031.lng' failed.\n    The reason: it is a pipe", "set/B1031.lng: Open",
         "The reason: Too many levels of symbolic links", "set/D1031.lng: Open", "The reason: No such file",
         "set/E1031.lng: Open", "The reason: Input/output error", "set/F1031.lng:2: equal", "files: 5,"},
        prepare + "ulimit -t 20;");
    EXPECT_EQ(said.find('\033'), std::string::npos);
}
#endif

TEST_F(LngcheckFaults, WritesOneJsonObjectPerLine) {
    folder.write("A1033.lng", clean + "no \"\\\x01\n");
    expectRun("--json A1033.lng", 1,
              {"{\"file\": \"A1033.lng\", \"line\": 59, \"severity\": \"fault\", \"text\": \"equal (=) expected.\", "
               "\"hint\": \"This line needs",
               "\"}\n{\"files\": 1, \"faults\": 1, \"warnings\": 0}\n"});
    expectRun("--json --stats --quiet A1033.lng", 1,
              {"{\"language\": 1033, \"keys\": 24, \"missing\": 0, \"faults\": 1, \"warnings\": 0}\n"});
    expectRun("--stats A1033.lng", 1, {"language ", "1033 (English) ", " 24 ", " 0 ", " 1 ", " 0\n", "files: 1"});
}

TEST_F(LngcheckFaults, ReportsTheMissingTextsOfANewFile) {
    expectRun("--init 1039 new/Equalizer1039.lng", 0, {});
    expectInOrder(contents("new/Equalizer1039.lng"),
                  {"<CODEPAGE 1252>\r\n", "\r\n[Parametric Equalizer]\r\n", "// English: dB\r\nIDS_DB = dB\r\n",
                   "// English: Frequency\r\nIDD_Options_Freq = \r\n"});
    expectRun("--strict new", 1, {"Equalizer1039.lng:17: the text is empty", "files: 1, faults: 14, warnings: 0"});
    expectRun("--init 1039 new/Equalizer1039.lng", 1, {"the file exists"});
    expectRun("--init 1031 new/Equalizer1039.lng", 2, {"as in Equalizer1031.lng"});
    expectRun("--init 10 A10.lng", 0, {});
    EXPECT_EQ(contents("A10.lng").find("<"), contents("A10.lng").find("< &Back"));
}

TEST_F(LngcheckFaults, ConvertsSourcesToLanguageFilesAndBackWithoutAChange) {
    int sources = 0;
    for (const auto& entry : std::filesystem::directory_iterator(EQ_LANGUAGE_SOURCES_DIR)) {
        if (!entry.path().filename().string().starts_with("Equalizer")) continue;
        const std::string name = entry.path().stem().string();
        std::string source = given(entry.path().string());
        folder.write(name + ".txt", source);
        expectRun("--convert " + name + ".txt " + name + ".lng", 0, {"left out: the context [LV2]"});
        source.erase(source.find("[LV2]"));
        EXPECT_TRUE(contents(name + ".lng") == shipped(name.substr(9))) << name;
        expectRun("--convert " + name + ".lng back.txt", 0, {});
        EXPECT_EQ(contents("back.txt"), source);
        ++sources;
    }
    EXPECT_GE(sources, 13);
    expectRun("--convert Equalizer1034.txt A10.lng", 0, {"left out: lines 5, 45"});
    EXPECT_TRUE(contents("A10.lng") == shipped("10"));
    expectRun("--convert Equalizer1031.txt A1041.lng", 1, {"Equalizer1031.txt:4: code page 1252 does not suit"});
    folder.write("x.txt", "\xEF\xBB\xBF<CODEPAGE 1252>\n[A]\na = \xD0\x94\n");
    expectRun("--convert x.txt A1031.lng", 1, {"x.txt:3: code page 1252 has no '\xD0\x94'"});
    expectRun("--convert x.txt y.txt", 2, {"must end in .lng"});
    EXPECT_FALSE(files().contains("A1031.lng") || files().contains("A1041.lng"));
}

} // namespace

} // namespace eq
