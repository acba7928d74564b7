#include "support/LanguageText.h"

#include "tests/support/AnsiCodepage.h"

#include <gtest/gtest.h>

#include <tuple>

namespace eq {

TEST(LanguageText, ReturnsItsTextInBothWidths) {
    LanguageText text(L"wide");
    EXPECT_STREQ(text.narrow(), "wide");
    text.assign("a narrow text");
    const wchar_t* const wide = text.wide();
    EXPECT_STREQ(wide, L"a narrow text");
    EXPECT_EQ(text.wide(), wide);
    text.assign(text.wide()); // the object receives its own text, in both widths
    text.assign(text.narrow());
    EXPECT_STREQ(text.wide(), L"a narrow text");
    text.assign(static_cast<const wchar_t*>(nullptr));
    EXPECT_EQ(text.narrow(), nullptr);
    EXPECT_EQ(LanguageText(nullptr).wide(), nullptr);
}

TEST(LanguageText, ConvertsInTheAnsiCodePage) {
    const std::tuple<UINT, const char*, const wchar_t*, const char*> rows[] = {
        {1252, "\x80", L"\u20AC", "\x80"},
        // The narrow text would need more than two bytes per unit, so it is empty.
        {65001, "\xE3\x81\x82\xE3\x81\x84", L"\u3042\u3044", ""},
        {65001, "", L"", ""},
    };
    for (const auto& [number, given, wide, narrow] : rows) {
        const AnsiCodepage codepage(number);
        if (!codepage) continue;
        LanguageText text;
        text.assign(given);
        EXPECT_STREQ(text.wide(), wide) << number;
        text.assign(wide);
        EXPECT_STREQ(text.narrow(), narrow) << number;
    }
}

} // namespace eq
