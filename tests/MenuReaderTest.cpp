#include "wedge/MenuReader.h"

#include "tests/support/Rewritten.h"

#include <gtest/gtest.h>

// The keys and their texts are those of the language file beside the test program.

namespace {

using Text = std::u16string_view;

Rewritten rewrite(const TemplateBuilder& menu) {
    return rewriteWith(PrepareMenuResource, menu.get());
}

/// Behind a gap, a popup that is the last of its level and holds one, a separator, and items of every alignment.
TemplateBuilder standardMenu(Text popup, Text item, Text last) {
    TemplateBuilder menu;
    menu.words({0, 6, 1, 2, 3});
    menu.words({0, 100}).text(item);
    menu.words({0, 0, 0}); // a separator
    menu.word(0x90).text(popup);
    menu.word(0x10).text(u"inner");
    menu.words({0x80, 101}).text(u"{T_Unknown}");
    return menu.words({0x80, 102}).text(last);
}

void extendedItem(TemplateBuilder& menu, unsigned info, Text text) {
    menu.align().doubleWord(0x200).doubleWord(8).doubleWord(77).word(info).text(text);
    if ((info & 1) != 0) menu.align().doubleWord(0xABCD1234);
}

TemplateBuilder extendedMenu(Text popup, Text item, Text last) {
    TemplateBuilder menu;
    menu.words({1, 8}).doubleWord(5).doubleWord(6);
    extendedItem(menu, 0, item);
    extendedItem(menu, 0, u"");
    extendedItem(menu, 0x81, popup);
    extendedItem(menu, 0x01, u"inner");
    extendedItem(menu, 0x80, u"odd");
    extendedItem(menu, 0x80, last);
    return menu;
}

} // namespace

TEST(PrepareMenuResource, ExpandsTheTextsOfItemsAndPopups) {
    for (const auto& form : {standardMenu, extendedMenu}) {
        EXPECT_EQ(rewrite(form(u"{T_Unknown}", u"{T_Empty}", u"{")).status, PrepUnchanged);
        EXPECT_TRUE(rewrite(form(u"{T_Long}", u"{T_Short}\tF1", u"&{T_Two}"))
                        .is(form(u"A longer translation", u"S\tF1", u"&SS")));
        EXPECT_TRUE(rewrite(form(u"{T_Two}", u"x", u"xy")).is(form(u"SS", u"x", u"xy")));
    }
}

TEST(PrepareMenuResource, FailsForWhatIsNoMenuAndNeverReadsOutsideItsBytes) {
    // Of no known version, and with a gap that is odd or too short.
    EXPECT_EQ(rewrite(TemplateBuilder().words({2, 0, 0x80, 1, 0})).status, PrepFailed);
    EXPECT_EQ(rewrite(TemplateBuilder().words({0x100, 0, 0x80, 1, 0})).status, PrepFailed);
    EXPECT_EQ(rewrite(TemplateBuilder().words({0, 3, 0x80, 1, 0, 0, 0})).status, PrepFailed);
    EXPECT_EQ(rewrite(TemplateBuilder().words({1, 0, 0, 0, 0, 0, 0, 0, 0x80, 0})).status, PrepFailed);
    for (const auto& form : {standardMenu, extendedMenu})
        tryBroken(PrepareMenuResource, form(u"{T_Short}", u"{T_Two}", u"xy").get());
    void* block = nullptr;
    EXPECT_EQ(PrepareMenuResource(nullptr, &block), PrepFailed);
    EXPECT_EQ(PrepareMenuResource("", 0, nullptr), PrepFailed);
}

TEST(PrepareMenuResource, ReadsPopupsOfAnyDepthThatItsRangeAllows) {
    TemplateBuilder menu = TemplateBuilder().words({0, 0});
    for (int depth = 0; depth < 16000; ++depth) menu.word(0x90).text(u"");
    EXPECT_EQ(rewrite(TemplateBuilder(menu).words({0x80, 1}).text(u"{T_Short}")).status, PrepReplaced);
    for (int depth = 0; depth < 1000; ++depth) menu.word(0x90).text(u"");
    EXPECT_EQ(rewrite(menu.words({0x80, 1}).text(u"{T_Short}")).status, PrepFailed);
}
