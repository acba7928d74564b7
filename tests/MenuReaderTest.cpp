#include "wedge/MenuReader.h"

#include "tests/support/Rewritten.h"
#include "tests/support/TemplateBuilder.h"

#include <gtest/gtest.h>

#include <string>

// The keys and their texts are those of the language file beside the test program.

namespace {

using Text = std::u16string_view;

Rewritten rewrite(const TemplateBuilder& menu) {
    return rewriteWith<PrepareMenuResource>(menu.get());
}

/// A popup that is the last of its level and holds one, a separator, and items of every alignment.
TemplateBuilder standardMenu(Text popup, Text item, Text last) {
    TemplateBuilder menu;
    menu.words({0, 0});
    menu.word(0).word(100).text(item);
    menu.words({0, 0, 0}); // a separator
    menu.word(0x90).text(popup);
    menu.word(0x10).text(u"inner");
    menu.word(0x80).word(101).text(u"{T_Unknown}");
    menu.word(0x80).word(102).text(last);
    return menu;
}

void extendedItem(TemplateBuilder& menu, unsigned info, Text text) {
    menu.align().doubleWord(0x200).doubleWord(8).doubleWord(77).word(info).text(text);
    if ((info & 1) != 0) menu.align().doubleWord(0xABCD1234);
}

TemplateBuilder extendedMenu(Text popup, Text item, Text last) {
    TemplateBuilder menu;
    menu.words({1, 4}).doubleWord(5);
    extendedItem(menu, 0, item);
    extendedItem(menu, 0, u"");
    extendedItem(menu, 0x81, popup);
    extendedItem(menu, 0x01, u"inner");
    extendedItem(menu, 0x80, u"odd");
    extendedItem(menu, 0x80, last);
    return menu;
}

TemplateBuilder deepMenu(int depth) {
    TemplateBuilder menu;
    menu.words({0, 0});
    for (int i = 0; i < depth; ++i) menu.word(0x90).text(u"");
    return menu.word(0x80).word(1).text(u"{T_Short}");
}

} // namespace

TEST(PrepareMenuResource, ExpandsTheTextsOfItemsAndPopups) {
    for (const auto& form : {standardMenu, extendedMenu}) {
        EXPECT_EQ(rewrite(form(u"{T_Unknown}", u"{T_Empty}", u"{")).status, PrepUnchanged);
        EXPECT_TRUE(rewrite(form(u"{T_Long}", u"{T_Short}\tF1", u"&{T_Two}"))
                        .is(form(u"A longer translation", u"S\tF1", u"&SS")));
        EXPECT_TRUE(rewrite(form(u"{T_Two}", u"x", u"xy")).is(form(u"SS", u"x", u"xy")));
        EXPECT_TRUE(rewrite(form(u"{T_Short}", u"x", u"xy")).is(form(u"S", u"x", u"xy")));
    }
}

TEST(PrepareMenuResource, CarriesAGapInFrontOfTheFirstItemOver) {
    const auto standard = [](Text text) {
        return TemplateBuilder().words({0, 6, 1, 2, 3}).word(0x80).word(9).text(text);
    };
    EXPECT_EQ(rewrite(standard(u"x")).status, PrepUnchanged);
    EXPECT_TRUE(rewrite(standard(u"{T_Long}")).is(standard(u"A longer translation")));

    TemplateBuilder extended = TemplateBuilder().words({1, 8}).doubleWord(5).doubleWord(6);
    TemplateBuilder expected = extended;
    extendedItem(extended, 0x80, u"{T_Two}");
    extendedItem(expected, 0x80, u"SS");
    EXPECT_TRUE(rewrite(extended).is(expected));
}

TEST(PrepareMenuResource, FailsForWhatIsNoMenuAndNeverReadsOutsideItsBytes) {
    EXPECT_EQ(rewrite(TemplateBuilder().words({2, 0, 0x80, 1, 0})).status, PrepFailed);
    EXPECT_EQ(rewrite(TemplateBuilder().words({0x100, 0, 0x80, 1, 0})).status, PrepFailed);
    EXPECT_EQ(rewrite(TemplateBuilder().words({0, 3, 0x80, 1, 0, 0, 0})).status, PrepFailed) << "an odd gap";
    EXPECT_EQ(rewrite(TemplateBuilder().words({1, 0, 0x80, 1, 0, 0, 0, 0, 0, 0x80, 0})).status, PrepFailed);
    for (const auto& form : {standardMenu, extendedMenu}) {
        expectFailureAtEveryCut<PrepareMenuResource>(form(u"{T_Short}", u"{T_Two}", u"xy").get());
        tryEveryByteValue<PrepareMenuResource>(form(u"{T_Short}", u"t", u"u").get());
    }
    void* block = nullptr;
    EXPECT_EQ(PrepareMenuResource(nullptr, &block), PrepFailed);
    EXPECT_EQ(PrepareMenuResource("", 0, nullptr), PrepFailed);
}

TEST(PrepareMenuResource, ReadsPopupsOfAnyDepthThatItsRangeAllows) {
    EXPECT_EQ(rewrite(deepMenu(16000)).status, PrepReplaced);
    EXPECT_EQ(rewrite(deepMenu(17000)).status, PrepFailed);
}
