// Tests the behaviour of system functions that no other test covers. On Windows the tests call the system's functions.
// If the results of the stand-in differ, the stand-in is wrong.

#include "platform/win32.h"

#include "tests/support/AnsiCodepage.h"
#include "wedge/Codepages.h"

#ifndef _WIN32
#include "platform/standin/TestHooks.h"
#include "tests/support/LanguageSettings.h"
#include "wedge/LanguageSelection.h"

#include <pty.h>
#include <termios.h>
#include <unistd.h>
#endif

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>
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
    // clang-format off
    const std::tuple<UINT, std::string, std::wstring, bool> cases[] = {
        {1252, "\x81\x8D\x8F\x90\x9D", L"\x81\x8D\x8F\x90\x9D", true}, {1253, "A\xAA", L"A\xF8F9", false},
        {1255, "\xE0\xC7\xCA", L"\u05D0\u05B7\u05BA", true}, {437, "\x01\x7F\xE1", L"\x01\x7F\u00DF", true},
        {932, "\x81\0x"s, L"\u30FB\0x"s, false}, {1361, "\x88\x61\\", L"\uAC00\\", true},
        {CP_UTF8, "\xE2\x82x", L"\xFFFDx", false}, {CP_UTF8, "\xC0\xAF", L"\xFFFD\xFFFD", false},
        {CP_UTF8, "\xF4\x90\x80\x80", L"\xFFFD\xFFFD\xFFFD", false}};
    // clang-format on
    for (const auto& [page, bytes, text, isValid] : cases) {
        SCOPED_TRACE(std::to_string(page) + ": " + testing::PrintToString(bytes));
        EXPECT_EQ(decoded(page, bytes), text);
        SetLastError(NO_ERROR);
        EXPECT_EQ(decoded(page, bytes, MB_ERR_INVALID_CHARS).empty(), !isValid);
        EXPECT_TRUE(refused(true, isValid ? NO_ERROR : ERROR_NO_UNICODE_TRANSLATION));
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

// clang-format off
/// A page, the characters of 0xE1 or, in a page with two bytes per character, of 0xB0 0xA1, some undefined bytes, the
/// first and last byte of each range of lead bytes, and the private-use characters of the undefined bytes.
struct Page {
    UINT number;
    std::wstring text;
    std::string undefined = {}, leadBytes = {};
    std::wstring privateUnits = {};
};
const Page Pages[] = {
    {437, L"\xDF"}, {737, L"\x3AC"}, {775, L"\xDF"}, {813, L"\x3B1"}, {819, L"\xE1"}, {850, L"\xDF"}, {852, L"\xDF"},
    {855, L"\x440"}, {860, L"\xDF"}, {861, L"\xDF"}, {862, L"\xDF"}, {863, L"\xDF"}, {865, L"\xDF"},
    {866, L"\x441"}, {869, L"\x3B7"}, {912, L"\xE1"}, {915, L"\x441"}, {916, L"\x5D1"}, {920, L"\xE1"}, {921, L"\x12F"},
    {922, L"\xE1"}, {1089, L"\x641"}, {1250, L"\xE1"}, {1251, L"\x431"}, {1252, L"\xE1"}, {1254, L"\xE1"},
    {1256, L"\x644"}, {1258, L"\xE1"}, {857, L"\xDF", "\xD5\xE7", "", L"\xF8BB\xF8BC"},
    {864, L"\xFED3", "\xA6\xFF", "", L"\xF8BE\xF8C0"},
    {874, L"\xE41", "\xDB\xDC", "", L"\xF8C1\xF8C2"}, {1253, L"\x3B1", "\xAA\xFF", "", L"\xF8F9\xF8FB"},
    {1255, L"\x5D1", "\xD9\xDA", "", L"\xF88D\xF88E"}, {1257, L"\x12F", "\xA1\xA5", "", L"\xF8FC\xF8FD"},
    {932, L"\xFF70\xFF61", "\xA0\xFD", "\x81\x9F\xE0\xFC", L"\xF8F0\xF8F1"},
    {943, L"\xFF70\xFF61", "", "\x81\x9F\xE0\xFC", L""},
    {936, L"\x554A", "\xFF", "\x81\xFE", L"\xF8F5"}, {949, L"\xAC00", "\xFF", "\x81\xFE", L"\xF8F7"},
    {950, L"\x965B", "\xFF", "\x81\xFE", L"\xF8F8"},
    {1361, L"\xC330", "\xD4\xFF", "\x84\xD3\xD8\xDE\xE0\xF9", L"\xF8EC\xF8F6"},
};
// clang-format on

TEST(CodePages, HaveTheCharactersAndLeadBytesOfTheirPublishedTables) {
    for (const auto& [number, text, undefined, leadBytes, privateUnits] : Pages) {
        SCOPED_TRACE(number);
#ifdef _WIN32
        if (!IsValidCodePage(number)) continue;
#endif
        EXPECT_EQ(decoded(number, leadBytes.empty() ? "\xE1" : "\xB0\xA1"), text);
        EXPECT_EQ(encoded(number, text), leadBytes.empty() ? "\xE1" : "\xB0\xA1");
        EXPECT_EQ(decoded(number, undefined), privateUnits);
        for (const char byte : undefined) EXPECT_EQ(decoded(number, {byte}, MB_ERR_INVALID_CHARS), L"");
        for (int byte = 0; byte < 256; ++byte) {
            const auto bound =
                std::ranges::upper_bound(leadBytes, byte, {}, [](char c) { return int{static_cast<BYTE>(c)}; });
            const std::size_t passed = static_cast<std::size_t>(bound - leadBytes.begin());
            const bool leads = passed % 2 != 0 || (passed != 0 && static_cast<BYTE>(leadBytes[passed - 1]) == byte);
            EXPECT_EQ(IsDBCSLeadByteEx(number, static_cast<BYTE>(byte)) != FALSE, leads) << byte;
            EXPECT_TRUE(byte >= 0x80 || decoded(number, {static_cast<char>(byte)}) == std::wstring(1, wchar_t(byte)));
        }
    }
}

/// Compares both directions with the definition of UTF-8 for every code point, and with the system's practice of one
/// replacement character per unfinished sequence.
TEST(CodePages, ConvertEveryCodePointToUtf8AndBack) {
    const auto tail = [](std::uint32_t bits) { return static_cast<char>(0x80 + bits % 64); };
    for (std::uint32_t point = 1; point < 0x110000;
         point = point == 0xD7FF ? 0xE000 : point + (point < 0x10000 ? 1 : 31)) {
        std::string bytes(1, static_cast<char>(point));
        std::wstring units(1, static_cast<wchar_t>(point));
        if (point >= 0x80) bytes = {static_cast<char>(0xC0 + point / 64), tail(point)};
        if (point >= 0x800) bytes = {static_cast<char>(0xE0 + point / 4096), tail(point / 64), tail(point)};
        if (point >= 0x10000) {
            bytes = {static_cast<char>(0xF0 + point / 262144), tail(point / 4096), tail(point / 64), tail(point)};
            units = {static_cast<wchar_t>(0xD7C0 + point / 1024), static_cast<wchar_t>(0xDC00 + point % 1024)};
        }
        ASSERT_EQ(decoded(CP_UTF8, bytes, MB_ERR_INVALID_CHARS), units) << point;
        ASSERT_EQ(encoded(CP_UTF8, units), bytes) << point;
    }
    // clang-format off
    const std::pair<std::string, std::size_t> unfinished[] = {
        {"\x80", 1}, {"\xBF", 1}, {"\xC1\xBF", 2}, {"\xC2", 1}, {"\xDF\xC0", 2}, {"\xE0\x9F\xBF", 2}, {"\xE1\x80", 1},
        {"\xED\xA0\x80", 2}, {"\xEF\xBF", 1}, {"\xF0\x8F\xBF\xBF", 3}, {"\xF0\x90\x80", 1}, {"\xF3\xBF\xBF\xC0", 2},
        {"\xF5\x80\x80\x80", 4}, {"\xFF", 1}};
    // clang-format on
    for (const auto& [bytes, replacements] : unfinished) {
        EXPECT_EQ(decoded(CP_UTF8, bytes), std::wstring(replacements, L'\xFFFD')) << testing::PrintToString(bytes);
        EXPECT_EQ(decoded(CP_UTF8, bytes, MB_ERR_INVALID_CHARS), L"");
    }
    for (const std::wstring& units : {L"\xD800"s, L"\xDBFF\xE000"s, L"\xDC00"s, L"\xDFFF"s, L"\xD800\xD800"s}) {
        EXPECT_EQ(encoded(CP_UTF8, units).substr(0, 3), "\xEF\xBF\xBD");
        EXPECT_EQ(WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, units.data(), 1, nullptr, 0, nullptr, nullptr), 0);
    }
}

TEST(CodePages, RefuseArgumentsThatTheSystemRefuses) {
    char narrow[4] = {};
    wchar_t wide[4] = {};
    BOOL defaults = TRUE;
    SetLastError(NO_ERROR);
    // A conversion to UTF-8 refuses the last argument.
    const auto toNarrow = [&](UINT page, DWORD flags, const wchar_t* text, int size, int room, const char* other) {
        return WideCharToMultiByte(page, flags, text, size, narrow, room, other,
                                   page > 100 && page < 2000 ? &defaults : nullptr);
    };
    // clang-format off
    const std::tuple<DWORD, const char*, int, wchar_t*, int, int, DWORD> cases[] = {
        {0, "abc", -1, nullptr, 0, 4, 0}, {0, "abc", -1, wide, 4, 4, 0}, {0, "xyz", 2, wide, 2, 2, 0},
        {0, "abc", 3, wide, 2, 0, ERROR_INSUFFICIENT_BUFFER}, {0, nullptr, 1, wide, 4, 0, ERROR_INVALID_PARAMETER},
        {0, "abc", 0, wide, 4, 0, ERROR_INVALID_PARAMETER}, {0, "abc", 1, nullptr, 4, 0, ERROR_INVALID_PARAMETER},
        {0, "abc", 1, wide, -1, 0, ERROR_INVALID_PARAMETER}, {0x10000, "abc", 1, wide, 4, 0, ERROR_INVALID_FLAGS}};
    // clang-format on
    for (const UINT page : {UINT{1252}, UINT{CP_UTF8}, UINT{CP_ACP}, UINT{3}}) {
        for (const auto& [flags, text, size, buffer, room, result, code] : cases) {
            EXPECT_EQ(MultiByteToWideChar(page, flags, text, size, buffer, room), result) << page;
            EXPECT_TRUE(refused(true, code));
        }
        EXPECT_EQ(toNarrow(page, 0, L"abc", -1, 4, nullptr), 4);
        EXPECT_STREQ(narrow, "abc");
        EXPECT_EQ(toNarrow(page, 0, L"abc", 2, 0, nullptr), 2);
        EXPECT_TRUE(refused(toNarrow(page, 0x10000, L"abc", 1, 4, nullptr) == 0, ERROR_INVALID_FLAGS));
        EXPECT_TRUE(refused(toNarrow(page, 0, L"abc", 0, 4, nullptr) == 0, ERROR_INVALID_PARAMETER));
        EXPECT_TRUE(refused(toNarrow(page, 0, L"abc", 3, 2, nullptr) == 0, ERROR_INSUFFICIENT_BUFFER));
    }
    EXPECT_TRUE(refused(MultiByteToWideChar(77, 0, "abc", 1, wide, 4) == 0, ERROR_INVALID_PARAMETER));
    EXPECT_TRUE(refused(toNarrow(77, 0, L"abc", 1, 4, nullptr) == 0, ERROR_INVALID_PARAMETER));
    EXPECT_EQ(MultiByteToWideChar(1252, MB_PRECOMPOSED, "abc", 1, wide, 4), 1);
    // The caller's own default character has two bytes if its first byte is a lead byte.
    EXPECT_EQ(toNarrow(1252, WC_NO_BEST_FIT_CHARS, L"\x416z", 2, 4, "#"), 2);
    EXPECT_EQ(std::string(narrow, 2), "#z");
    EXPECT_NE(defaults, FALSE);
    EXPECT_EQ(toNarrow(932, WC_NO_BEST_FIT_CHARS, L"\xE9z", 2, 4, "\x81\x48"), 3);
    EXPECT_EQ(std::string(narrow, 3), "\x81\x48z");
    EXPECT_EQ(toNarrow(1252, 0, L"a", 1, 4, nullptr), 1);
    EXPECT_EQ(defaults, FALSE);
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
    EXPECT_TRUE(refused(!DisableThreadLibraryCalls(nullptr), ERROR_MOD_NOT_FOUND));
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
    // The remaining languages, by their ANSI code page. "0" means that the language has none.
    // clang-format off
    const std::pair<const char*, std::vector<LCID>> others[] = {
        {"950", {0x1404}}, {"1250", {0x101A, 0x141A, 0x181A, 0x241A, 0x2C1A, 0x0442}}, {"1254", {0x042C, 0x0443}},
        {"1256", {0x0420, 0x0820, 0x0846, 0x0859, 0x0480, 0x048C, 0x0492}},
        {"0", {0x4C09, 0x042B, 0x0430, 0x0431, 0x0433, 0x0437, 0x0439, 0x043A, 0x043F, 0x0845, 0x0445, 0x0446, 0x0447,
               0x0448, 0x0449, 0x0849, 0x044A, 0x044B, 0x044C, 0x044D, 0x044E, 0x044F, 0x0850, 0x0C50, 0x0451, 0x0C51,
               0x0453, 0x0454, 0x0455, 0x0457, 0x0458, 0x0459, 0x045A, 0x045B, 0x045C, 0x045D, 0x045E, 0x0460, 0x0860,
               0x0461, 0x0861, 0x0463, 0x0465, 0x0472, 0x0873, 0x0473, 0x0477, 0x0478, 0x0481}},
        {"1251", {0x281A, 0x1C1A, 0x201A, 0x301A, 0x0428, 0x082C, 0x042F, 0x0440, 0x0843, 0x0444, 0x0450, 0x046D,
                  0x0485}},
        {"1252",
         {0x0803, 0x2009, 0x2809, 0x2C09, 0x3009, 0x3409, 0x3809, 0x3C09, 0x4009, 0x4409, 0x4809, 0x100A, 0x140A,
          0x180A, 0x1C0A, 0x200A, 0x240A, 0x280A, 0x2C0A, 0x300A, 0x340A, 0x380A, 0x3C0A, 0x400A, 0x440A, 0x480A,
          0x4C0A, 0x500A, 0x540A, 0x5C0A, 0x180C, 0x200C, 0x240C, 0x280C, 0x2C0C, 0x300C, 0x340C, 0x380C, 0x3C0C,
          0x042E, 0x082E, 0x0432, 0x0832, 0x0434, 0x0435, 0x043B, 0x083B, 0x0C3B, 0x103B, 0x143B, 0x183B, 0x1C3B,
          0x203B, 0x243B, 0x083C, 0x043E, 0x083E, 0x0441, 0x0452, 0x0456, 0x085D, 0x085F, 0x0462, 0x0464, 0x0466,
          0x0867, 0x0467, 0x0468, 0x046A, 0x046B, 0x086B, 0x0C6B, 0x046C, 0x046E, 0x046F, 0x0470, 0x0471, 0x0474,
          0x0475, 0x0476, 0x047A, 0x047C, 0x047E, 0x0482, 0x0483, 0x0484, 0x0486, 0x0487, 0x0488, 0x0491}}};
    // clang-format on
    for (const auto& [page, languages] : others)
        for (const LCID language : languages) EXPECT_STREQ(read(language), page) << std::hex << language;
    EXPECT_TRUE(refused(read(0x0812) == "none"s, ERROR_INVALID_PARAMETER));
}

#ifndef _WIN32

/// Removes the environment's variables for the language until the end of a test.
class Environment : public testing::Test {
protected:
    Environment() {
        for (EnvironmentVariable* variable : {&all, &messages, &lang}) variable->set(std::nullopt);
    }

    EnvironmentVariable all{"LC_ALL"}, messages{"LC_MESSAGES"}, lang{"LANG"};
};

TEST_F(Environment, SelectsTheSystemsLanguageByItsVariablesInTheUsualOrder) {
    const std::tuple<EnvironmentVariable&, const char*, WORD> cases[] = {
        {lang, "de_DE.UTF-8", 0x407}, {lang, "de_XX@euro", 0x407}, {lang, "pt", 0x416},
        {lang, "zh_TW.Big5", 0x404},  {lang, "ur", 0x420},         {lang, "sr_RS@latin", 0x281A},
        {lang, "es_ES.UTF-8", 0xC0A}, {lang, "C.UTF-8", 0},        {lang, "POSIX", 0},
        {messages, "it_IT", 0x410},   {lang, "fr_FR", 0x410},      {all, "", 0x410},
        {all, "ru_RU", 0x419},
    };
    EXPECT_EQ(ReadUiLanguage(uilanguage_default), 0);
    for (const auto& [variable, locale, language] : cases) {
        variable.set(locale);
        EXPECT_EQ(ReadUiLanguage(uilanguage_default), language) << locale;
    }
}

TEST_F(Environment, SelectsTheDecimalSeparator) {
    wchar_t text[4] = {};
    const auto read = [&](LCID locale, LCTYPE type, int size) { return GetLocaleInfoW(locale, type, text, size); };
    for (const auto& [locale, point] : {std::pair("de_DE", L","), {"en_US", L"."}, {"fr_CH", L","}, {"", L"."}}) {
        lang.set(locale);
        EXPECT_EQ(read(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, 2), 2);
        EXPECT_STREQ(text, point) << locale;
    }
    EXPECT_EQ(read(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, 0), 2);
    EXPECT_TRUE(refused(read(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, 1) == 0, ERROR_INSUFFICIENT_BUFFER));
}

TEST(SerialPorts, HaveTheSettingsOfTheTerminal) {
    int receiver = -1, sender = -1;
    ASSERT_EQ(openpty(&receiver, &sender, nullptr, nullptr, nullptr), 0);
    const auto open = [](const char* path) {
        standin::setSerialPortPath("COM2", path);
        return CreateFileA("COM2", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    };
    const HANDLE port = open(ttyname(sender));
    ASSERT_NE(port, INVALID_HANDLE_VALUE);
    // clang-format off
    const std::pair<const char*, DWORD> failures[] = {
        {"/dev/none", ERROR_FILE_NOT_FOUND}, {"/dev/null", ERROR_INVALID_FUNCTION}, {"/dev", ERROR_GEN_FAILURE}};
    const std::pair<DWORD, speed_t> speeds[] = {
        {110, B110}, {300, B300}, {600, B600}, {1200, B1200}, {2400, B2400}, {4800, B4800}, {9600, B9600},
        {19200, B19200}, {38400, B38400}, {57600, B57600}, {115200, B115200}, {230400, B230400}};
    // A pseudo-terminal always has eight bits and no parity, but keeps the kind of the parity.
    const std::tuple<BYTE, BYTE, tcflag_t> formats[] = {
        {NOPARITY, ONESTOPBIT, 0}, {ODDPARITY, TWOSTOPBITS, PARODD | CSTOPB}, {EVENPARITY, ONESTOPBIT, 0}};
    // clang-format on
    for (const auto& [path, code] : failures) EXPECT_TRUE(refused(open(path) == INVALID_HANDLE_VALUE, code)) << path;
    DCB state{};
    const auto fields = [](DCB& record) {
        return std::tie(record.BaudRate, record.ByteSize, record.Parity, record.StopBits);
    };
    for (const auto& [rate, code] : speeds) {
        for (const auto& [parity, stops, flags] : formats) {
            fields(state) = std::tuple(rate, BYTE{8}, parity, stops);
            SetCommState(port, &state);
            termios settings{};
            tcgetattr(sender, &settings);
            EXPECT_EQ(cfgetospeed(&settings), code);
            EXPECT_EQ(settings.c_cflag & (CSTOPB | CLOCAL | CREAD | PARODD), flags | CLOCAL | CREAD);
            DCB read{};
            EXPECT_TRUE(GetCommState(port, &read));
            EXPECT_EQ(fields(read), std::tuple(rate, 8, NOPARITY, stops));
        }
    }
    for (BYTE DCB::*const member : {&DCB::ByteSize, &DCB::Parity, &DCB::StopBits}) {
        DCB wrong = state;
        wrong.*member = static_cast<BYTE>(member == &DCB::StopBits ? 1 : wrong.*member + 1);
        EXPECT_TRUE(refused(!SetCommState(port, &wrong), ERROR_INVALID_PARAMETER));
    }
    DWORD written = 7;
    EXPECT_TRUE(WriteFile(port, "a\nb", 3, &written, nullptr));
    EXPECT_EQ(written, 3U);
    EXPECT_TRUE(refused(!WriteFile(port, "a", 1, nullptr, nullptr), ERROR_INVALID_PARAMETER));
    EXPECT_TRUE(CloseHandle(port));
    EXPECT_TRUE(refused(!WriteFile(port, "a", 1, &written, nullptr), ERROR_INVALID_HANDLE));
    close(sender);
    close(receiver);
}
#endif

} // namespace

} // namespace eq
