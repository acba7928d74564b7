// What the system's functions promise. On Windows the system itself is asked: where it and the stand-in answer
// differently, the stand-in is wrong.

#include "platform/Owners.h"
#include "platform/Paths.h"
#include "platform/win32.h"

#include "tests/support/AnsiCodepage.h"
#include "tests/support/Refused.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Threads.h"

#ifndef _WIN32
#include "platform/standin/TestHooks.h"
#include "tests/support/LanguageSettings.h"
#include "wedge/LanguageSelection.h"
#endif

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace std::string_literals;

std::wstring decoded(UINT page, const std::string& bytes, DWORD flags = 0) {
    const int size = static_cast<int>(bytes.size());
    std::wstring text(bytes.size() + 1, L'\0');
    SetLastError(NO_ERROR);
    const int count = MultiByteToWideChar(page, flags, bytes.data(), size, text.data(), size + 1);
    EXPECT_EQ(MultiByteToWideChar(page, flags, bytes.data(), size, nullptr, 0), count);
    text.resize(static_cast<std::size_t>(count));
    return text;
}

/// UTF-8 takes no default character, and says so.
std::string encoded(UINT page, const std::wstring& text, BOOL* usedDefault = nullptr) {
    const int size = static_cast<int>(text.size());
    std::string bytes(text.size() * 3 + 1, '\0');
    const DWORD flags = page == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
    const int room = static_cast<int>(bytes.size());
    const int count = WideCharToMultiByte(page, flags, text.data(), size, bytes.data(), room, nullptr, usedDefault);
    EXPECT_EQ(WideCharToMultiByte(page, flags, text.data(), size, nullptr, 0, nullptr, nullptr), count);
    bytes.resize(static_cast<std::size_t>(count));
    return bytes;
}

TEST(CodePages, DecodeBytesAsTheSystemDoes) {
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
        {874, "\xA1\xDB\x81", L"\u0E01\xF8C1\x81", false},
        {437, "\x01\x7F\xE1", L"\x01\x7F\u00DF"},
        {932, "\x82\xA0\xB1\\", L"\u3042\uFF71\\"},
        {932, "\x81\x01x", L"\u30FBx", false},
        {932, "\x81\0x"s, L"\u30FB\0x"s, false},
        {1361, "\x88\x61\\", L"\uAC00\\"},
        {CP_UTF8, "\xF0\x9F\x98\x80", L"\xD83D\xDE00"},
        {CP_UTF8, "a\0b"s, L"a\0b"s},
        {CP_UTF8, "\xE2\x82x", L"\xFFFDx", false},
        {CP_UTF8, "\xC0\xAF", L"\xFFFD\xFFFD", false},
        {CP_UTF8, "\xF4\x90\x80\x80", L"\xFFFD\xFFFD\xFFFD", false},
        {CP_UTF8, "\xFF\x80y", L"\xFFFD\xFFFDy", false},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(std::to_string(row.page) + ": " + testing::PrintToString(row.bytes));
        EXPECT_EQ(decoded(row.page, row.bytes), row.text);
        EXPECT_EQ(decoded(row.page, row.bytes, MB_ERR_INVALID_CHARS).empty(), !row.valid);
        EXPECT_TRUE(refused(true, row.valid ? NO_ERROR : ERROR_NO_UNICODE_TRANSLATION));
    }
}

TEST(CodePages, EncodeTextAsTheSystemDoes) {
    struct Case {
        UINT page;
        std::wstring text;
        std::string bytes;
        bool defaults = false;
    };
    const std::vector<Case> cases = {
        {1252, L"\u20AC\u00E4\x81", "\x80\xE4\x81"},
        {1252, L"\xD83D\xDE00", "??", true},
        {1253, L"\xF8F9", "\xAA"},
        // Characters that stand twice in the page: the usual place is the first one, or the last.
        {932, L"\u222A\u7E8A\u2170", "\x81\xBE\xFA\x5C\xFA\x40"},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(std::to_string(row.page) + ": " + testing::PrintToString(row.bytes));
        BOOL defaults = -1;
        EXPECT_EQ(encoded(row.page, row.text, &defaults), row.bytes);
        EXPECT_EQ(defaults, row.defaults);
    }
    EXPECT_EQ(encoded(CP_UTF8, L"\u00E4\u20AC\xD83D\xDE00"), "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(encoded(CP_UTF8, L"\xD83Dx\xDE00"), "\xEF\xBF\xBDx\xEF\xBF\xBD");
}

TEST(CodePages, TakeTheCallersDefaultCharacterAndRefuseWhatTheyCannotConvert) {
    std::array<wchar_t, 8> text{};
    std::array<char, 8> bytes{};
    EXPECT_EQ(WideCharToMultiByte(1252, WC_NO_BEST_FIT_CHARS, L"a\u0416", -1, bytes.data(), 8, "_", nullptr), 3);
    EXPECT_STREQ(bytes.data(), "a_");
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "", -1, text.data(), 8), 1);
    const auto wide = [&](UINT page, DWORD flags, const char* from, int size, int room, DWORD reason) {
        return refused(MultiByteToWideChar(page, flags, from, size, text.data(), room) == 0, reason);
    };
    const auto narrow = [&](UINT page, const wchar_t* from, int size, int room, DWORD reason) {
        return refused(WideCharToMultiByte(page, 0, from, size, bytes.data(), room, nullptr, nullptr) == 0, reason);
    };
    for (const UINT page : {709U, 934U, 4242U}) {
        EXPECT_TRUE(wide(page, 0, "a", 1, 8, ERROR_INVALID_PARAMETER)) << page;
        EXPECT_TRUE(narrow(page, L"a", 1, 8, ERROR_INVALID_PARAMETER)) << page;
    }
    EXPECT_TRUE(wide(1252, 0, "a", 0, 8, ERROR_INVALID_PARAMETER));
    EXPECT_TRUE(wide(1252, 0, nullptr, 1, 8, ERROR_INVALID_PARAMETER));
    EXPECT_TRUE(wide(1252, 0, "a", 1, -1, ERROR_INVALID_PARAMETER));
    EXPECT_TRUE(wide(CP_UTF8, 0x40000000, "a", 1, 8, ERROR_INVALID_FLAGS));
    EXPECT_TRUE(wide(1252, 0, "abc", 3, 2, ERROR_INSUFFICIENT_BUFFER));
    EXPECT_TRUE(wide(CP_UTF8, 0, "\xE2\x82\xAC!", 4, 1, ERROR_INSUFFICIENT_BUFFER));
    EXPECT_TRUE(narrow(1252, L"a", 0, 8, ERROR_INVALID_PARAMETER));
    EXPECT_TRUE(narrow(932, L"\u3042", 1, 1, ERROR_INSUFFICIENT_BUFFER));
    EXPECT_TRUE(narrow(CP_UTF8, L"\u20AC", 1, 2, ERROR_INSUFFICIENT_BUFFER));
}

TEST(CodePages, KnowTheLeadBytesOfTheAnsiPage) {
    for (const UINT ansi : {1252U, 932U, UINT{CP_UTF8}}) {
        const AnsiCodepage page(ansi);
        for (int byte = 0; page && byte < 256; ++byte) {
            const bool isLead = ansi == 932 && byte >= 0x81 && byte <= 0xFC && (byte <= 0x9F || byte >= 0xE0);
            EXPECT_EQ(IsDBCSLeadByte(static_cast<BYTE>(byte)) != FALSE, isLead) << ansi << ": " << byte;
        }
    }
    if (const AnsiCodepage page(932); page) {
        EXPECT_EQ(decoded(CP_ACP, "\x82\xA0"), L"\u3042");
    }
}

TEST(CodePages, ConvertOnManyThreadsAtOnce) {
    std::atomic<int> right = 0;
    onThreads(4, [&right](int) {
        for (const UINT page : {852U, 949U, 1250U, 1361U, 949U}) {
            wchar_t unit = 0;
            right += MultiByteToWideChar(page, 0, "A", 1, &unit, 1) == 1 && unit == L'A';
        }
    });
    EXPECT_EQ(right, 20);
}

TEST(Modules, AreFoundFromAnAddressInsideThemAndTellTheirPath) {
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
    EXPECT_TRUE(refused(!GetModuleHandleExA(flags, small.data(), &module), ERROR_MOD_NOT_FOUND)) << "on the heap";

    const HMODULE user = GetModuleHandleA("USER32");
    EXPECT_EQ(user, GetModuleHandleW(L"user32.DLL"));
    EXPECT_NE(GetProcAddress(user, "MessageBoxExW"), nullptr);
    EXPECT_TRUE(refused(GetProcAddress(user, "messageboxexw") == nullptr, ERROR_PROC_NOT_FOUND));
    EXPECT_TRUE(refused(GetModuleHandleA("no such library") == nullptr, ERROR_MOD_NOT_FOUND));
}

std::vector<std::string> namesThatFit(const std::string& pattern) {
    std::vector<std::string> names;
    WIN32_FIND_DATAA entry{};
    const platform::FindHandle search(FindFirstFileA(pattern.c_str(), &entry));
    if (!search) return names;
    do {
        names.emplace_back(entry.cFileName);
    } while (FindNextFileA(search.get(), &entry));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NO_MORE_FILES});
    std::sort(names.begin(), names.end());
    return names;
}

TEST(FileSearch, FindsTheNamesThatFitWithoutRegardToCaseAndTellsWhyItFindsNone) {
    const TemporaryFolder folder;
    for (const char* const name : {"A1031.lng", "b1033.LNG", "c.lng.txt", "dlng", "e.lng"}) folder.write(name, "x");
    std::filesystem::create_directory(folder.path("folder.lng"));
    using Names = std::vector<std::string>;
    EXPECT_EQ(namesThatFit(folder.path("*.lng")), (Names{"A1031.lng", "b1033.LNG", "e.lng", "folder.lng"}));
    EXPECT_EQ(namesThatFit(folder.path("a1031.LNG")), Names{"A1031.lng"});
    EXPECT_EQ(namesThatFit(folder.path("?.l*g")), Names{"e.lng"});
    EXPECT_EQ(namesThatFit(folder.path("*L*R*g*")), Names{"folder.lng"});

    const auto find = [&](const char* pattern) {
        WIN32_FIND_DATAA entry{};
        return FindFirstFileA(folder.path(pattern).c_str(), &entry);
    };
    EXPECT_TRUE(refused(find("*.lnk") == INVALID_HANDLE_VALUE, ERROR_FILE_NOT_FOUND));
    EXPECT_TRUE(refused(find("missing/*.lng") == INVALID_HANDLE_VALUE, ERROR_PATH_NOT_FOUND));
}

std::string ansiCodepageOf(LCID language) {
    std::array<char, 6> digits{};
    const int size = GetLocaleInfoA(language, LOCALE_IDEFAULTANSICODEPAGE, digits.data(), 6);
    EXPECT_EQ(static_cast<std::size_t>(size), std::strlen(digits.data()) + 1);
    return digits.data();
}

TEST(Languages, HaveAnAnsiCodepage) {
    struct Case {
        const char* codepage;
        std::vector<LCID> languages;
    };
    const std::vector<Case> cases = {
        {"874", {0x041E, 0x1E}},
        {"932", {0x0411, 0x11}},
        {"936", {0x0804, 0x1004, 0x04}},
        {"949", {0x0412}},
        {"950", {0x0404, 0x0C04}},
        {"1250", {0x0405, 0x0415, 0x041A, 0x0818, 0x241A, 0x15, 0x1A}},
        {"1251", {0x0419, 0x0819, 0x19, 0x082C, 0x281A, 0x0843}},
        {"1252", {0x0407, 0x0409, 0x040A, 0x0414, 0x0436, 0x0814, 0x0C07, 0x1C09, 0x07, 0x16}},
        {"1253", {0x0408}},
        {"1254", {0x041F, 0x042C}},
        {"1255", {0x040D}},
        {"1256", {0x0401, 0x0429, 0x4001, 0x29}},
        {"1257", {0x0425, 0x27}},
        {"1258", {0x042A}},
        {"0", {0x0439}},
    };
    for (const Case& row : cases)
        for (const LCID language : row.languages) EXPECT_EQ(ansiCodepageOf(language), row.codepage) << language;

    std::array<char, 6> digits{};
    EXPECT_TRUE(
        refused(GetLocaleInfoA(0x0812, LOCALE_IDEFAULTANSICODEPAGE, digits.data(), 6) == 0, ERROR_INVALID_PARAMETER));
}

#ifndef _WIN32

/// The environment without a word of languages.
class Environment : public testing::Test {
protected:
    Environment() {
        for (EnvironmentVariable* variable : {&all, &messages, &numeric, &lang}) variable->set(std::nullopt);
    }

    EnvironmentVariable all{"LC_ALL"};
    EnvironmentVariable messages{"LC_MESSAGES"};
    EnvironmentVariable numeric{"LC_NUMERIC"};
    EnvironmentVariable lang{"LANG"};
};

TEST_F(Environment, NamesTheSystemsLanguageByItsVariablesInTheUsualOrder) {
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
        SCOPED_TRACE(row.locale);
        row.variable.set(row.locale);
        EXPECT_EQ(ReadUiLanguage(uilanguage_default), row.language);
    }
}

TEST_F(Environment, TellsTheDecimalSeparator) {
    std::array<wchar_t, 5> text{};
    const auto separator = [&] {
        EXPECT_EQ(GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, text.data(), 5), 2);
        return text[0];
    };
    EXPECT_EQ(separator(), L'.');
    lang.set("de_DE.UTF-8");
    EXPECT_EQ(separator(), L',');
    numeric.set("de_CH.UTF-8");
    EXPECT_EQ(separator(), L'.');
}

TEST(MessageBoxes, AreWrittenToStandardErrorUnlessTheyAskSomething) {
    const int before = standin::shownMessageBoxes().count;
    testing::internal::CaptureStderr();
    EXPECT_EQ(MessageBoxW(nullptr, L"no \u00E4", nullptr, MB_ICONERROR), IDOK);
    constexpr UINT yesNo = 4;
    EXPECT_EQ(MessageBoxW(nullptr, L"really?", L"Question", yesNo), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error: no \xC3\xA4\n");
    EXPECT_EQ(standin::shownMessageBoxes().count, before + 1);
}

#endif

} // namespace
