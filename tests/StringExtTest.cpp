#include "wedge/string_ext.h"

#include "tests/support/FailureText.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace eq {

namespace {

constexpr unsigned Utf8 = 65001;
constexpr unsigned NoSuchCodePage = 64999;
constexpr unsigned long InvalidParameter = 87;
constexpr unsigned long InsufficientBuffer = 122;

} // namespace

TEST(StringExt, ConvertsBetweenCodePagesAndUnits) {
    // clang-format off
    const std::tuple<unsigned, std::string, std::wstring> rows[] = {
        {0, "plain", L"plain"}, {1252, "5 \x80 \xFC", L"5 \u20AC \u00FC"}, {932, "a\x82\xA0\xB1", L"a\u3042\uFF71"},
        // Two characters that fill the narrow buffer to its last byte, and one character of two units.
        {Utf8, "\xE3\x81\x82\xE3\x81\x84", L"\u3042\u3044"}, {Utf8, "\xF0\x9D\x84\x9E", L"\xD834\xDD1E"},
        {NoSuchCodePage, "", L""}};
    // clang-format on
    for (const auto& [codePage, narrow, wide] : rows) {
        EXPECT_EQ(convert_wstring(narrow, codePage), wide) << codePage;
        EXPECT_EQ(convert_string(wide, codePage), narrow) << codePage;
    }
    EXPECT_EQ(convert_wstring(std::string("ab\0cd", 5), 1252), L"ab") << "a zero ends the text";
    EXPECT_EQ(convert_string(std::wstring(L"ab\0cd", 5), 1252), "ab");
    EXPECT_EQ(convert_wstring("x\xD2y", 1253).size(), 3U) << "the code page does not define this byte";
}

TEST(StringExt, CutsATextBetweenCharacters) {
    // clang-format off
    const std::tuple<unsigned, std::string, std::string> rows[] = {
        {932, "a\x8A\xBF\xB1\x8E\x9A", "0113446"}, {1252, "a\x8A\xBF", "0123"},
        {Utf8, "\xC3\xA9z\xF0\x9D\x84\x9E", "00233337"}};
    // clang-format on
    for (const auto& [codePage, text, expected] : rows) {
        std::string sizes;
        for (std::size_t limit = 0; limit < expected.size(); ++limit)
            sizes += std::to_string(wholeCharacters(text, limit, codePage));
        EXPECT_EQ(sizes, expected) << codePage;
    }
}

TEST(StringExt, ReportsWhichCallFailed) {
    EXPECT_EQ(failureOf<convert_wstring_failed>([] { return convert_wstring("x", NoSuchCodePage); }),
              "convert_wstring_failed thrown by convert_wstring [wedge/string_ext:N] with context\n" +
                  CallFailureText("MultiByteToWideChar()", InvalidParameter));
    // The result needs nine bytes, and the limit is eight.
    EXPECT_EQ(failureOf<convert_string_failed>([] { return convert_string(L"\u3042\u3044\u3046", Utf8); }),
              "convert_string_failed thrown by convert_string [wedge/string_ext:N] with context\n" +
                  CallFailureText("WideCharToMultiByte()", InsufficientBuffer));
}

} // namespace eq
