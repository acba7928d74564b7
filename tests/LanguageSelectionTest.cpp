#include "wedge/LanguageSelection.h"

#include "tests/support/LanguageSettings.h"
#include "tests/support/MessageBoxWatch.h"
#include "tests/support/TemporaryFolder.h"
#include "wedge/CLanguageStore.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace eq {

namespace {

class LanguageSelection : public ::testing::Test {
protected:
    LanguageSettings settings{0, 0};
    TemporaryFolder folder;
};

/// The path of a module, the language of the override, the system's language, the language of the store, the files, and
/// the number of files that are read, in their order.
const std::tuple<const char*, WORD, WORD, WORD, std::vector<std::string>, std::size_t> Cases[] = {
    // The order is: override, system's language, its primary language, English. The primary language of the override
    // does not count. Files without a language id are read if the override or the system's language is not set.
    {"Module.dll", 1031, 1036, 1031, {"A1031.lng", "A1036.lng", "A12.lng", "A1033.lng", "A7.lng", "x0.lng"}, 4},
    {"Module.dll", 0, 1033, 1033, {"Shared.lng", "A1033.lng"}, 2},
    {"Module.dll", 1031, 0, 1031, {"A1031.lng", "x0.lng", "A1033.lng"}, 3},
    {"Module.dll", 0, 1031, 7, {"A7.lng"}, 1},
    // The parent of a build folder is searched after the folder; the parent's parent is not searched.
    {"Debug/Release/Module.dll", 0, 1031, 1031, {"Debug/A1031.lng", "A1031.lng"}, 1},
    // English in the first folder precedes the override's language in the second folder.
    {"Plugin/DebugU/Module.dll", 1031, 1036, 1033, {"Plugin/DebugU/A1033.lng", "Plugin/A1031.lng"}, 2},
    {"Plugin/releaseMinSize/Module.dll", 0, 1031, 1033, {"Plugin/A1033.lng"}, 1},
    {"Plugin/MyRelease/Module.dll", 0, 1031, 0, {"Plugin/A1033.lng"}, 0},
};

} // namespace

TEST_F(LanguageSelection, MergesFilesInTheOrderOfPrecedence) {
    for (const auto& [module, overrideLanguage, systemLanguage, language, files, read] : Cases) {
        SCOPED_TRACE(module + testing::PrintToString(files));
        const TemporaryFolder place;
        place.write(module, "");
        // Each file defines its own key and the keys of all files before it.
        std::vector<std::string> keys;
        std::string references, expected;
        for (const std::string& file : files) {
            keys.push_back(file);
            std::string text = "[Module]\n";
            for (const std::string& key : keys) text.append(key).append(" = ").append(file).append("\n");
            place.write(file, text);
            references += "{" + file + "}";
            expected += keys.size() <= read ? file : "{" + file + "}";
        }
        const LanguageSettings changed(0, systemLanguage);
        const MessageBoxWatch watch;
        const CLanguageStore store(place.path(module), overrideLanguage);
        EXPECT_EQ(store.language(), language);
        EXPECT_EQ(store.ExpandKeys(references, nullptr), expected);
        EXPECT_EQ(watch.count(), read == 0 ? 1 : 0);
    }
}

TEST_F(LanguageSelection, HasNoLanguageAndNoMessageForAPathWithoutExtensionOrFolder) {
    folder.write("1031.lng", "[Module]\na = b\n");
    const MessageBoxWatch watch;
    for (const std::string& path : {std::string(), std::string("Module.dll"), std::string("."), folder.path("Module")})
        EXPECT_EQ(CLanguageStore(path, 1031).language(), 0) << path;
    EXPECT_EQ(watch.count(), 0);
}

TEST_F(LanguageSelection, SetsTheCodePageAtEachScan) {
    folder.write("Release/A1033.lng", "[Module]\na = b\n");
    EXPECT_EQ(CLanguageStore(folder.path("Release/Module.dll"), 0).codepage(), 0U)
        << "the first scan knows no language";
    folder.write("A1041.lng", "[My.Module]\na = ascii\n");
    folder.write("A1033.lng", "[My.Module]\nb = \x83\x5C\n");
    const CLanguageStore store(folder.path("My.Module.dll"), 1041);
    EXPECT_STREQ(store.Find("b"), L"\u30BD") << "the code page must be that of the found language";
    EXPECT_EQ(store.codepage(), 932U);
    folder.write("A1041.lng", "<CODEPAGE 932>\n");
    folder.write("A1033.lng", "<CODEPAGE 850>\n");
    EXPECT_EQ(CLanguageStore(folder.path("Module.dll"), 1041).codepage(), 850U);
}

TEST_F(LanguageSelection, FindsEachFileOfALanguageWhosePathFitsTheSystemsBuffers) {
    std::string place = "x";
    place.append(200 - folder.path(place).size(), 'x');
    const std::string longest = std::string(258 - 200 - 9, 'n') + "1033.lng";
    for (const std::string& name : {std::string("1033.LNG"), std::string("Fr1033_lng.lng"), std::string("A1033.txt"),
                                    std::string("A1033.lng/no file"), longest, "n" + longest})
        folder.write(std::string(place).append("/").append(name), "");
    EXPECT_EQ(languageFilesOf(folder.path(place), 1033).size(), 3U);
}

TEST_F(LanguageSelection, ReadsTheOverrideAndTheSystemsLanguage) {
    const std::pair<DWORD, WORD> rows[] = {{0, 1031}, {1031, 0}, {0x10409, 1036}};
    for (const auto& [value, language] : rows) {
        const LanguageSettings changed(value, language);
        EXPECT_EQ(ReadLanguageOverride(), static_cast<WORD>(value));
        EXPECT_EQ(ReadUiLanguage(uilanguage_default), language);
    }
#ifndef _WIN32
    const LanguageSettings french(0, 1036);
    EXPECT_EQ(ReadUiLanguage(uilanguage_user), 1036);
#else
    settings.overrideValue.setText("4"); // the system stores this text in four bytes, the size of a number
    EXPECT_EQ(ReadLanguageOverride(), 0) << "the type of the value is not a number";
    settings.overrideValue.remove();
    EXPECT_EQ(ReadLanguageOverride(), 0);
    settings.user_value.setText("00000407");
    EXPECT_EQ(ReadUiLanguage(uilanguage_user), 1031);
    settings.system_value.setText("0001040C");
    settings.user_value.setText("0");
    EXPECT_EQ(ReadUiLanguage(uilanguage_user), 1036);
    settings.user_value.remove();
    EXPECT_EQ(ReadUiLanguage(uilanguage_user), 1036);
    settings.system_value.setText("0000000000000000000000000000000000000407");
    EXPECT_EQ(ReadUiLanguage(uilanguage_default), 0);
    settings.system_value.remove();
    EXPECT_EQ(ReadUiLanguage(uilanguage_default), 0);
#endif
}

TEST(LanguageFileName, DeclaresALanguage) {
    const std::pair<const char*, WORD> rows[] = {{"fr 1036.LNG", 1036}, {"1031.lngx", 1031}, {"A66567.lng", 1031},
                                                 {"a1b2.lng", 0},       {"1031", 0},         {"1031..lng", 0}};
    for (const auto& [name, language] : rows) EXPECT_EQ(ParseLanguageFileName(name, "", "lng"), language) << name;
    EXPECT_EQ(ParseLanguageFileName("My Equalizer1031.lng", "equalizer", "lng"), 1031);
    EXPECT_TRUE(CompareNoCase("\xE4", "a") < 0 && CompareNoCase("a", "B") < 0) << "bytes are signed";
    for (const char* const name : {"Equaliser1031.lng", "qualizer1031.lng"})
        EXPECT_EQ(ParseLanguageFileName(name, "equalizer", "lng"), 0) << name;
}

} // namespace eq
