#include "support/LanguageText.h"

#include "tests/support/AnsiCodepage.h"

#include <gtest/gtest.h>

#include <cstring>
#include <cwchar>
#include <tuple>

TEST(LanguageText, GivesBothFormsOfWhatItWasGiven) {
    LanguageText text(L"wide");
    EXPECT_STREQ(text.narrow(), "wide");
    text.assign("a narrow text");
    const wchar_t* const wide = text.wide();
    EXPECT_STREQ(wide, L"a narrow text");
    EXPECT_EQ(text.wide(), wide);
    text.assign(text.wide()); // its own text, in either width
    text.assign(text.narrow());
    EXPECT_STREQ(text.wide(), L"a narrow text");
    text.assign(L"");
    EXPECT_STREQ(text.narrow(), "");
}

TEST(LanguageText, IsEmptyUntilAssignedAndAfterRelease) {
    LanguageText text(nullptr);
    EXPECT_EQ(text.wide(), nullptr);
    text.assign(L"wide");
    text.release();
    EXPECT_EQ(text.narrow(), nullptr);
    text.assign("narrow");
    text.assign(static_cast<const wchar_t*>(nullptr));
    EXPECT_EQ(text.narrow(), nullptr);
    text.assign("narrow");
    text.assign(static_cast<const char*>(nullptr));
    EXPECT_EQ(text.wide(), nullptr);
}

TEST(LanguageText, ConvertsInTheAnsiCodePage) {
    const std::tuple<UINT, const wchar_t*, const char*> rows[] = {
        {1251, L"\u0413\u0446", "\xC3\xF6"},
        {1252, L"\u20AC", "\x80"},
        {65001, L"\u3042\u3044", "\xE3\x81\x82\xE3\x81\x84"},
    };
    for (const auto& [number, wide, narrow] : rows) {
        SCOPED_TRACE(number);
        const AnsiCodepage codepage(number);
        if (!codepage) continue;
        LanguageText text;
        text.assign(narrow);
        EXPECT_STREQ(text.wide(), wide);
        text.assign(wide);
        const bool fits = std::strlen(narrow) < 2 * std::wcslen(wide) + 2;
        EXPECT_STREQ(text.narrow(), fits ? narrow : "");
    }
}
