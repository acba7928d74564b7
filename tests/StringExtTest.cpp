#include "wedge/string_ext.h"

#include "tests/support/FailureText.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr unsigned Utf8 = 65001;
constexpr unsigned NoSuchCodePage = 64999;
constexpr unsigned long InvalidParameter = 87;
constexpr unsigned long InsufficientBuffer = 122;

} // namespace

TEST(StringExt, ConvertsBetweenCodePagesAndUnits) {
    const struct {
        unsigned codePage;
        std::string narrow;
        std::wstring wide;
    } rows[] = {
        {0, "plain", L"plain"},
        {1252, "5 \x80 \xFC", L"5 \u20AC \u00FC"},
        {1251, "\xC3\xF6", L"\u0413\u0446"},
        {932, "a\x82\xA0\xB1", L"a\u3042\uFF71"},
        {Utf8, "\xE3\x81\x82\xE3\x81\x84", L"\u3042\u3044"}, // fills the narrow buffer to its last byte
        {Utf8, "\xF0\x9D\x84\x9E", L"\xD834\xDD1E"},         // one character, two units
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.codePage << " " << row.narrow);
        EXPECT_EQ(convert_wstring(row.narrow, row.codePage), row.wide);
        EXPECT_EQ(convert_string(row.wide, row.codePage), row.narrow);
    }
}

TEST(StringExt, EndsTheResultAtAZeroAndNeverFailsOnAnEmptyTextOrAByteThatTheCodePageLeavesOpen) {
    EXPECT_EQ(convert_wstring("x\xD2y", 1253).size(), 3U);
    EXPECT_EQ(convert_wstring(std::string("ab\0cd", 5), 1252), L"ab");
    EXPECT_EQ(convert_string(std::wstring(L"ab\0cd", 5), 1252), "ab");
    EXPECT_EQ(convert_wstring("", NoSuchCodePage), L"");
    EXPECT_EQ(convert_string(L"", NoSuchCodePage), "");
}

TEST(StringExt, TellsWhichCallFailed) {
    const auto toWide = failureOf<convert_wstring_failed>([] { return convert_wstring("x", NoSuchCodePage); });
    EXPECT_EQ(toWide, "convert_wstring_failed thrown by convert_wstring [wedge/string_ext:N] with context\n" +
                          CallFailureText("MultiByteToWideChar()", InvalidParameter));
    const auto toNarrow = failureOf<convert_string_failed>([] { return convert_string(L"x", NoSuchCodePage); });
    EXPECT_EQ(toNarrow, "convert_string_failed thrown by convert_string [wedge/string_ext:N] with context\n" +
                            CallFailureText("WideCharToMultiByte()", InvalidParameter));

    // Nine bytes, where there is room for eight.
    const auto tooLong = failureOf<convert_string_failed>([] { return convert_string(L"\u3042\u3044\u3046", Utf8); });
    EXPECT_NE(tooLong.find(CallFailureText("WideCharToMultiByte()", InsufficientBuffer)), std::string::npos);
}
