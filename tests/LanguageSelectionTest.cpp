#include "wedge/LanguageSelection.h"

#include "tests/support/LanguageSettings.h"
#include "tests/support/MessageBoxWatch.h"
#include "tests/support/TemporaryFolder.h"
#include "wedge/CLanguageStore.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

/// A language file that defines keys of one letter, each with the file's own name as its text.
struct File {
    std::string name;
    std::string keys;
    std::string winning; ///< the keys whose texts are to be found
};

struct Case {
    const char* module;
    WORD override_language;
    WORD system_language;
    WORD language;
    std::vector<File> files;
    int messages = 0;
};

const Case Cases[] = {
    // The override goes ahead of the system's language, and that ahead of English.
    {"Module.dll", 1031, 1036, 1031, {{"A1031.lng", "k", "k"}, {"A1036.lng", "kb", "b"}, {"A1033.lng", "kbd", "d"}}},
    // The system's language goes ahead of its primary language, and that ahead of English.
    {"Module.dll", 0, 1036, 1036, {{"A1033.lng", "kpe", "e"}, {"A12.lng", "kp", "p"}, {"A1036.lng", "k", "k"}}},
    // The primary language alone will do.
    {"Module.dll", 0, 1031, 7, {{"A7.lng", "k", "k"}}},
    // English alone will do.
    {"Module.dll", 0, 1031, 1033, {{"A1033.lng", "k", "k"}}},
    // The primary language of the override is not looked for.
    {"Module.dll", 1031, 1036, 1033, {{"A7.lng", "k", ""}, {"A1033.lng", "e", "e"}}},
    // Without an override, files without a language go first and do not set it.
    {"Module.dll", 0, 1033, 1033, {{"A1033.lng", "ke", "e"}, {"Shared.lng", "ks", "ks"}}},
    // With an override and a system's language, files without a language are not read.
    {"Module.dll", 1033, 1031, 1033, {{"A1033.lng", "k", "k"}, {"Shared.lng", "s", ""}, {"x0.lng", "s", ""}}},
    // Without a system's language, files without a language go behind the override.
    {"Module.dll", 1031, 0, 1031, {{"A1031.lng", "k", "k"}, {"x0.lng", "ks", "s"}, {"A1033.lng", "se", "e"}}},
    // Every file of a language is read, whatever stands in front of its digits.
    {"Module.dll", 1036, 1036, 1036, {{"1036.LNG", "a", "a"}, {"Fr1036_lng.lng", "b", "b"}, {"B1036.txt", "d", ""}}},
    // A folder of a fitting name is no file.
    {"Module.dll", 1031, 1031, 1031, {{"A1031.lng", "k", "k"}, {"B1031.lng/1031.lng", "b", ""}}},
    // A build folder's parent is looked at in the second turn.
    {"Plugin/Release/Module.dll", 0, 1031, 1031, {{"Plugin/A1031.lng", "k", "k"}}},
    // The first turn's English goes ahead of the second turn's override.
    {"Plugin/DebugU/Module.dll",
     1031,
     1036,
     1033,
     {{"Plugin/A1031.lng", "kp", "p"}, {"Plugin/DebugU/A1033.lng", "k", "k"}}},
    // Files in the build folder alone will do.
    {"Plugin/releaseMinSize/Module.dll", 0, 1031, 1033, {{"Plugin/releaseMinSize/A1033.lng", "k", "k"}}},
    // The parent of another folder is not looked at.
    {"Plugin/MyRelease/Module.dll", 0, 1031, 0, {{"Plugin/A1033.lng", "k", ""}}, 1},
    // The parent's parent is not looked at.
    {"Release/Debug/Module.dll", 0, 1031, 0, {{"A1033.lng", "k", ""}}, 1},
    // A module is named by all but its last extension.
    {"My.Module.v2.dll", 0, 1031, 1033, {{"A1033.lng", "k", "k"}}},
};

class LanguageSelection : public ::testing::Test {
protected:
    LanguageSelection() { settings.setOverride(std::nullopt); }

    LanguageSettings settings;
    TemporaryFolder folder;
};

} // namespace

TEST_F(LanguageSelection, MergesFilesInTheOrderOfPrecedence) {
    for (const Case& row : Cases) {
        SCOPED_TRACE(testing::Message() << "case " << &row - Cases);
        const TemporaryFolder place;
        const std::string module_name = std::filesystem::path(row.module).stem().string();
        std::map<char, std::wstring> expected;
        for (const File& file : row.files) {
            std::string text = "[" + module_name + "]\n";
            for (const char key : file.keys) text.append(1, key).append(" = " + file.name + "\n");
            place.write(file.name, text);
            for (const char key : file.keys) expected[key];
            for (const char key : file.winning) expected[key].assign(file.name.begin(), file.name.end());
        }
        std::filesystem::create_directories(std::filesystem::path(place.path(row.module)).parent_path());
        settings.setSystemLanguage(row.system_language);

        const MessageBoxWatch watch;
        const CLanguageStore store(place.path(row.module), row.override_language);
        EXPECT_EQ(store.language(), row.language);
        EXPECT_EQ(watch.count(), row.messages);
        for (const auto& [key, name] : expected) {
            const wchar_t* const text = store.Find(std::string(1, key).c_str());
            EXPECT_EQ(text ? text : L"", name) << key;
        }
    }
}

TEST_F(LanguageSelection, StaysSilentlyEmptyForAPathWithoutExtensionOrFolder) {
    settings.setSystemLanguage(0);
    const std::string beside_files = folder.path("Module");
    folder.write("1031.lng", "[Module]\na = b\n");
    ASSERT_EQ(beside_files.find('.'), std::string::npos);
    for (const char* path : {"", "Module", "Module.dll", ".", beside_files.c_str()}) {
        const MessageBoxWatch watch;
        const CLanguageStore store(path, 1031);
        EXPECT_EQ(store.language(), 0) << path;
        EXPECT_EQ(watch.count(), 0) << path;
    }
}

TEST_F(LanguageSelection, ReadsFilesInTheAnsiCodePageOnceALanguageIsFound) {
    settings.setSystemLanguage(0);
    folder.write("A1041.lng", "[Module]\na = ascii\n");
    folder.write("A1033.lng", "[Module]\nb = \x83\x5C\n");
    const CLanguageStore store(folder.path("Module.dll"), 1041);
    EXPECT_STREQ(store.Find("b"), L"\u30BD");
}

TEST_F(LanguageSelection, SetsTheCodePageAnewWithEachScan) {
    settings.setSystemLanguage(0);
    folder.write("Release/A1033.lng", "[Module]\na = b\n");
    EXPECT_EQ(CLanguageStore(folder.path("Release/Module.dll"), 0).codepage(), 0U) << "one turn, no language yet";
    folder.write("Other/A1033.lng", "[Module]\na = b\n");
    EXPECT_EQ(CLanguageStore(folder.path("Other/Module.dll"), 0).codepage(), 1252U) << "the second turn knows it";
    folder.write("Other/A1033.lng", "<CODEPAGE 850>\n[Module]\na = b\n");
    EXPECT_EQ(CLanguageStore(folder.path("Other/Module.dll"), 0).codepage(), 850U);
}

TEST_F(LanguageSelection, TakesFilesWhosePathsFitTheSystemsBuffers) {
    std::string place = folder.path("x");
    place.append(200 - place.size(), 'x');
    std::filesystem::create_directory(place);
    const std::size_t separator_and_ending = std::string("/1033.lng").size();
    for (const std::size_t length : {258U, 259U}) {
        const std::string name = std::string(length - place.size() - separator_and_ending, 'n') + "1033.lng";
        std::ofstream(std::filesystem::path(place) / name) << "";
        ASSERT_TRUE(std::filesystem::exists(std::filesystem::path(place) / name));
    }
    const auto paths = languageFilesOf(place, 1033);
    ASSERT_EQ(paths.size(), 1U);
    EXPECT_EQ(paths.front().size(), 258U);
}

#ifndef _WIN32
TEST_F(LanguageSelection, FindsNothingInAFolderWhosePathIsTooLong) {
    for (const std::size_t length : {250U, 256U}) {
        std::string place = folder.path("x");
        place.append(length - place.size(), 'x');
        std::filesystem::create_directory(place);
        std::ofstream(place + "/1.lng") << "";
        EXPECT_EQ(languageFilesOf(place, 1).size(), length < 256 ? 1U : 0U);
    }
}
#endif

TEST_F(LanguageSelection, ReadsTheOverrideFromTheSettings) {
    EXPECT_EQ(ReadLanguageOverride(), 0);
    settings.setOverride(1031);
    EXPECT_EQ(ReadLanguageOverride(), 1031);
    settings.setOverride(0x10409);
    EXPECT_EQ(ReadLanguageOverride(), 0x0409);
#ifdef _WIN32
    settings.setOverrideText("\x07\x04");
    EXPECT_EQ(ReadLanguageOverride(), 0) << "not a number by its type";
#endif
}

TEST_F(LanguageSelection, ReadsTheSystemsLanguage) {
    EXPECT_TRUE(IsWindowsNt());
    for (const WORD language : std::initializer_list<WORD>{1031, 1033, 1041, 0}) {
        settings.setSystemLanguage(language);
        EXPECT_EQ(ReadUiLanguage(uilanguage_default), language);
    }
#ifdef _WIN32
    settings.setSystemLanguage(1036);
    settings.setUserLanguage(1031);
    EXPECT_EQ(ReadUiLanguage(uilanguage_default), 1036);
    EXPECT_EQ(ReadUiLanguage(uilanguage_user), 1031);
    settings.setUserLanguage(0);
    EXPECT_EQ(ReadUiLanguage(uilanguage_user), 1036);
    settings.removeUserLanguage();
    EXPECT_EQ(ReadUiLanguage(uilanguage_user), 1036);
    for (const char* text : {"German", "", "0000000000000000000000000000000000000407"}) {
        settings.setSystemText(text);
        EXPECT_EQ(ReadUiLanguage(uilanguage_default), 0) << text;
    }
    settings.setSystemText("00010407");
    EXPECT_EQ(ReadUiLanguage(uilanguage_default), 1031);
    settings.removeSystemLanguage();
    EXPECT_EQ(ReadUiLanguage(uilanguage_default), 0);
#endif
}

TEST(LanguageFileName, DeclaresALanguage) {
    const std::pair<const char*, WORD> rows[] = {
        {"fr 1036.LNG", 1036}, {"1031.lngx", 1031}, {"A66567.lng", 66567 - 65536},
        {"x0.lng", 0},         {"a1b2.lng", 0},     {"1031", 0},
        {"1031.", 0},          {"1031.ln", 0},      {"1031lng", 0},
        {"1031..lng", 0},
    };
    for (const auto& [name, language] : rows) EXPECT_EQ(ParseLanguageFileName(name, "", "lng"), language) << name;
    EXPECT_EQ(ParseLanguageFileName("My Equalizer1031.lng", "equalizer", "lng"), 1031);
    for (const char* const name : {"Equaliser1031.lng", "qualizer1031.lng"})
        EXPECT_EQ(ParseLanguageFileName(name, "equalizer", "lng"), 0) << name;
}

TEST(DefaultCodepage, IsTheAnsiOneOfTheLanguage) {
    const std::pair<WORD, UINT> rows[] = {{1031, 1252}, {1041, 932}, {1042, 949}, {1045, 1250}, {1049, 1251},
                                          {1055, 1254}, {2052, 936}, {0, 0},      {0x7C55, 0}};
    for (const auto& [language, codepage] : rows) EXPECT_EQ(DefaultCodepage(language), codepage) << language;
}
