#include "support/LanguageText.h"

#include "tests/support/AnsiCodepage.h"

#include <gtest/gtest.h>

#include <cstring>
#include <cwchar>

TEST(LanguageText, GivesBothFormsOfWhatItWasGiven) {
    LanguageText text(L"wide");
    EXPECT_STREQ(text.wide(), L"wide");
    EXPECT_STREQ(text.narrow(), "wide");
    text.assign("a narrow text");
    const wchar_t* const wide = text.wide();
    EXPECT_STREQ(wide, L"a narrow text");
    EXPECT_EQ(text.wide(), wide);
    EXPECT_STREQ(text.narrow(), "a narrow text");
    text.assign(text.wide()); // its own text, in either width
    text.assign(text.narrow());
    EXPECT_STREQ(text.wide(), L"a narrow text");
    text.assign(L"");
    EXPECT_STREQ(text.narrow(), "");
}

TEST(LanguageText, IsEmptyUntilAssignedAndAfterRelease) {
    LanguageText text;
    const auto isEmpty = [&text] { return text.wide() == nullptr && text.narrow() == nullptr; };
    EXPECT_TRUE(isEmpty());
    text.assign(L"wide");
    text.release();
    EXPECT_TRUE(isEmpty());
    text.assign("narrow");
    text.assign(static_cast<const wchar_t*>(nullptr));
    EXPECT_TRUE(isEmpty());
    text.assign("narrow");
    text.assign(static_cast<const char*>(nullptr));
    EXPECT_TRUE(isEmpty());
    EXPECT_EQ(LanguageText(nullptr).wide(), nullptr);
}

TEST(LanguageText, ConvertsInTheAnsiCodePage) {
    const struct {
        UINT codepage;
        const wchar_t* wide;
        const char* narrow;
    } rows[] = {
        {1251, L"\u0413\u0446", "\xC3\xF6"},
        {1252, L"\u20AC", "\x80"},
        {65001, L"\u3042\u3044", "\xE3\x81\x82\xE3\x81\x84"},
    };
    int tested = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.codepage);
        const AnsiCodepage codepage(row.codepage);
        if (!codepage) continue;
        ++tested;
        LanguageText text;
        text.assign(row.narrow);
        EXPECT_STREQ(text.wide(), row.wide);
        text.assign(row.wide);
        const bool fits = std::strlen(row.narrow) < 2 * std::wcslen(row.wide) + 2;
        EXPECT_STREQ(text.narrow(), fits ? row.narrow : "");
        EXPECT_STREQ(text.wide(), row.wide);
    }
    EXPECT_GT(tested, 0) << "the system has none of these code pages";
}
