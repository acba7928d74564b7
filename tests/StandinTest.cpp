// Tests the behaviour of system functions that no other test covers. On Windows the tests call the system's functions.
// If the results of the stand-in differ, the stand-in is wrong.

#include "platform/win32.h"

#include "tests/support/AnsiCodepage.h"
#include "wedge/Codepages.h"

#ifndef _WIN32
#include "tests/support/LanguageSettings.h"
#include "wedge/LanguageSelection.h"
#endif

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace eq {

namespace {

using namespace std::string_literals;

/// Succeeds if a system call has failed with this error code. Clears the code, so that a later failure without a code
/// is detected.
testing::AssertionResult refused(bool hasFailed, DWORD reason) {
    const DWORD code = GetLastError();
    SetLastError(NO_ERROR);
    if (hasFailed && code == reason) return testing::AssertionSuccess();
    return testing::AssertionFailure() << (hasFailed ? "refused" : "done") << " with code " << code;
}

std::wstring decoded(UINT page, const std::string& bytes, DWORD flags = 0) {
    std::array<wchar_t, 16> text{};
    const int count = MultiByteToWideChar(page, flags, bytes.data(), static_cast<int>(bytes.size()), text.data(), 16);
    return {text.data(), static_cast<std::size_t>(count)};
}

/// Returns a text in a code page. Conversions to UTF-8 refuse `usedDefault` and WC_NO_BEST_FIT_CHARS.
std::string encoded(UINT page, const std::wstring& text, BOOL* usedDefault = nullptr) {
    std::array<char, 16> bytes{};
    const DWORD flags = page == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
    const int size = static_cast<int>(text.size());
    const int count = WideCharToMultiByte(page, flags, text.data(), size, bytes.data(), 16, nullptr, usedDefault);
    return {bytes.data(), static_cast<std::size_t>(count)};
}

TEST(CodePages, DecodeInvalidTextsAsTheSystemDoes) {
    struct Case {
        UINT page;
        std::string bytes;
        std::wstring text;
        bool valid = true;
    };
    const std::vector<Case> cases = {
        {1252, "\x81\x8D\x8F\x90\x9D", L"\x81\x8D\x8F\x90\x9D"},
        {1253, "A\xAA", L"A\xF8F9", false},
        {1255, "\xE0\xC7\xCA", L"\u05D0\u05B7\u05BA"},
        {437, "\x01\x7F\xE1", L"\x01\x7F\u00DF"},
        {932, "\x81\0x"s, L"\u30FB\0x"s, false},
        {1361, "\x88\x61\\", L"\uAC00\\"},
        {CP_UTF8, "\xE2\x82x", L"\xFFFDx", false},
        {CP_UTF8, "\xC0\xAF", L"\xFFFD\xFFFD", false},
        {CP_UTF8, "\xF4\x90\x80\x80", L"\xFFFD\xFFFD\xFFFD", false},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(std::to_string(row.page) + ": " + testing::PrintToString(row.bytes));
        EXPECT_EQ(decoded(row.page, row.bytes), row.text);
        SetLastError(NO_ERROR);
        EXPECT_EQ(decoded(row.page, row.bytes, MB_ERR_INVALID_CHARS).empty(), !row.valid);
        EXPECT_TRUE(refused(true, row.valid ? NO_ERROR : ERROR_NO_UNICODE_TRANSLATION));
    }
}

TEST(CodePages, EncodeMissingAndRepeatedCharactersAsTheSystemDoes) {
    BOOL defaults = FALSE;
    EXPECT_EQ(encoded(1252, L"\xD83D\xDE00", &defaults), "??");
    EXPECT_NE(defaults, FALSE);
    EXPECT_EQ(encoded(1253, L"\xF8F9"), "\xAA");
    // These characters occur twice in the page. The system uses the first code of one character, and the last codes of
    // the others.
    EXPECT_EQ(encoded(932, L"\u222A\u7E8A\u2170"), "\x81\xBE\xFA\x5C\xFA\x40");
    EXPECT_EQ(encoded(CP_UTF8, L"\xD83Dx\xDE00"), "\xEF\xBF\xBDx\xEF\xBF\xBD");
}

TEST(Modules, AreFoundFromAnAddressInsideThemAndReportTheirPath) {
    static const int insideTheProgram = 0;
    HMODULE module = nullptr;
    const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    ASSERT_TRUE(GetModuleHandleExA(flags, reinterpret_cast<LPCSTR>(&insideTheProgram), &module));
    EXPECT_EQ(module, GetModuleHandleA(nullptr));

    std::array<char, 4096> path{};
    const DWORD length = GetModuleFileNameA(nullptr, path.data(), 4096);
    EXPECT_TRUE(std::filesystem::is_regular_file(path.data()));
    std::vector<char> small(length + 1, 'x');
    EXPECT_EQ(GetModuleFileNameA(module, small.data(), length + 1), length);
    EXPECT_STREQ(small.data(), path.data());
    EXPECT_TRUE(refused(GetModuleFileNameA(nullptr, small.data(), length) == length, ERROR_INSUFFICIENT_BUFFER));
    EXPECT_TRUE(refused(!GetModuleHandleExA(flags, small.data(), &module), ERROR_MOD_NOT_FOUND))
        << "an address on the heap";
    EXPECT_TRUE(refused(GetModuleHandleA("no such library") == nullptr, ERROR_MOD_NOT_FOUND));
}

TEST(Resources, AreFoundByTheDigitsOfTheirNumbersAndByNarrowNames) {
    const HRSRC dialog = FindResourceW(nullptr, MAKEINTRESOURCEW(143), MAKEINTRESOURCEW(5));
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(FindResourceW(nullptr, L"#143", L"#5"), dialog);
    EXPECT_EQ(FindResourceA(nullptr, "#143", "#5"), dialog);
    // 65679 has 143 in its low 16 bits
    EXPECT_TRUE(refused(FindResourceA(nullptr, "#65679", "#5") == nullptr, ERROR_INVALID_PARAMETER));
    const HRSRC named = FindResourceW(nullptr, L"Na\u00CFve", L"#10");
    ASSERT_NE(named, nullptr);
    const AnsiCodepage page(1252);
    EXPECT_EQ(FindResourceA(nullptr, page ? "Na\xCFve" : "Na\xC3\x8Fve", "#10"), named);
}

TEST(Languages, HaveOneOfTheirPublishedCodePagesAsAnsiCodePage) {
    std::array<char, 6> digits{};
    const auto read = [&](LCID language) {
        return GetLocaleInfoA(language, LOCALE_IDEFAULTANSICODEPAGE, digits.data(), 6) == 0 ? "none" : digits.data();
    };
    // The page that systems use for the first of these languages is not published. Systems no longer have the other two
    // languages.
    const std::set<WORD> exceptions = {0x0438, 0x0812, 0x081A};
    for (const CodepagePair& pair : codepagePairs()) {
        if (exceptions.contains(pair.language)) continue;
        const std::string page = read(pair.language);
        EXPECT_TRUE(CodepageFitsLanguage(std::stoi(page), pair.language)) << page << " " << std::hex << pair.language;
    }
    EXPECT_STREQ(read(0x0439), "0") << "this language has no ANSI code page";
    EXPECT_STREQ(read(0x042C), "1254") << "the code page is not in the published table";
    EXPECT_TRUE(refused(read(0x0812) == "none"s, ERROR_INVALID_PARAMETER));
}

#ifndef _WIN32

/// Removes the environment's variables for the language until the end of a test.
class Environment : public testing::Test {
protected:
    Environment() {
        for (EnvironmentVariable* variable : {&all, &messages, &lang}) variable->set(std::nullopt);
    }

    EnvironmentVariable all{"LC_ALL"};
    EnvironmentVariable messages{"LC_MESSAGES"};
    EnvironmentVariable lang{"LANG"};
};

TEST_F(Environment, SelectsTheSystemsLanguageByItsVariablesInTheUsualOrder) {
    struct Case {
        EnvironmentVariable& variable;
        const char* locale;
        WORD language;
    };
    const Case cases[] = {
        {lang, "de_DE.UTF-8", 0x407},  {lang, "de_XX@euro", 0x407},  {lang, "pt", 0x416},  {lang, "zh_TW.Big5", 0x404},
        {lang, "sr_RS@latin", 0x281A}, {lang, "es_ES.UTF-8", 0xC0A}, {lang, "C.UTF-8", 0}, {lang, "POSIX", 0},
        {messages, "it_IT", 0x410},    {lang, "fr_FR", 0x410},       {all, "", 0x410},     {all, "ru_RU", 0x419},
    };
    EXPECT_EQ(ReadUiLanguage(uilanguage_default), 0);
    for (const Case& row : cases) {
        row.variable.set(row.locale);
        EXPECT_EQ(ReadUiLanguage(uilanguage_default), row.language) << row.locale;
    }
}

#endif

} // namespace

} // namespace eq
