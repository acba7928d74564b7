#include "wedge/resources/MenuReader.h"

#include "tests/support/Rewritten.h"

#include <gtest/gtest.h>

#include <utility>

// The keys and their texts are in UnitTests1033.lng.

namespace eq {

namespace {

using Text = std::u16string_view;

/// Returns a menu with a gap before the first item, a separator, items of every alignment, and a last popup that
/// contains another popup.
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
        EXPECT_EQ(statusOf(PrepareMenuResource, form(u"{T_Unknown}", u"{T_Empty}", u"{")), PrepUnchanged);
        EXPECT_TRUE(replaces(PrepareMenuResource, form(u"{T_Long}", u"{T_Two}\tF1", u"{"),
                             form(u"A longer translation", u"SS\tF1", u"{")));
    }
}

TEST(PrepareMenuResource, RefusesAnUnknownVersionAndAGapThatIsOddOrTooShort) {
    EXPECT_EQ(statusOf(PrepareMenuResource, TemplateBuilder().words({2, 0, 0x80, 1, 0})), PrepFailed);
    EXPECT_EQ(statusOf(PrepareMenuResource, TemplateBuilder().words({0x100, 0, 0x80, 1, 0})), PrepFailed);
    const TemplateBuilder oddGap = TemplateBuilder().words({0, 3}).bytes("gap").words({0x80, 1}).text(u"{T_Short}");
    EXPECT_EQ(statusOf(PrepareMenuResource, oddGap), PrepFailed);
    EXPECT_EQ(statusOf(PrepareMenuResource, TemplateBuilder().words({1, 0, 0, 0, 0, 0, 0, 0, 0x80, 0})), PrepFailed);
}

TEST(PrepareMenuResource, RefusesATemplateThatItCannotReproduce) {
    for (const auto& [padding, status] : {std::pair{0U, PrepUnchanged}, {7U, PrepFailed}}) {
        TemplateBuilder menu = TemplateBuilder().words({1, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 'a', 0, padding});
        EXPECT_EQ(statusOf(PrepareMenuResource, menu.words({0, 0, 0, 0, 0, 0, 0x80, 'b', 0})), status) << padding;
    }
}

TEST(PrepareMenuResource, ReadsPopupsOfAnyDepthWithinItsRange) {
    TemplateBuilder menu = TemplateBuilder().words({0, 0});
    for (int depth = 0; depth < 16000; ++depth) menu.word(0x90).text(u"");
    EXPECT_EQ(statusOf(PrepareMenuResource, TemplateBuilder(menu).words({0x80, 1}).text(u"{T_Short}")), PrepReplaced);
    for (int depth = 0; depth < 1000; ++depth) menu.word(0x90).text(u"");
    EXPECT_EQ(statusOf(PrepareMenuResource, menu.words({0x80, 1}).text(u"{T_Short}")), PrepFailed);
}

} // namespace eq
