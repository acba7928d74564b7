#include "wedge/DialogReader.h"

#include "tests/support/Rewritten.h"
#include "tests/support/TemplateBuilder.h"

#include <gtest/gtest.h>

#include <string>

// The keys and their texts are those of the language file beside the test program.

namespace {

Rewritten rewrite(const TemplateBuilder& dialog) {
    return rewriteWith<PrepareDialogResource>(dialog.get());
}

TemplateBuilder standardHeader(std::uint32_t style, unsigned items, std::u16string_view caption) {
    TemplateBuilder dialog;
    dialog.doubleWord(style).doubleWord(0x11).words({items, 1, 2, 318, 247}).word(0).word(0).text(caption);
    return dialog;
}

TemplateBuilder extendedHeader(std::uint32_t style, unsigned items, std::u16string_view caption) {
    TemplateBuilder dialog;
    dialog.words({1, 0xFFFF}).doubleWord(7).doubleWord(0).doubleWord(style);
    dialog.words({items, 1, 2, 318, 247}).word(0).word(0).text(caption);
    return dialog;
}

void standardItem(TemplateBuilder& dialog, unsigned id, std::u16string_view title, std::string_view data = "") {
    dialog.align().doubleWord(0x50000000).doubleWord(0).words({1, 2, 3, 4, id}).words({0xFFFF, 0x82}).text(title);
    dialog.word(static_cast<unsigned>(data.size())).bytes(data);
}

void extendedItem(TemplateBuilder& dialog, std::uint32_t id, std::u16string_view title, std::string_view data = "") {
    dialog.align().doubleWord(0).doubleWord(0).doubleWord(0x50000000).words({1, 2, 3, 4}).doubleWord(id);
    dialog.text(u"Static").text(title).word(static_cast<unsigned>(data.size())).bytes(data);
}

/// A dialog of each form with texts and creation data of every alignment.
TemplateBuilder standardDialog(std::u16string_view caption, std::u16string_view first, std::u16string_view last) {
    TemplateBuilder dialog = standardHeader(0x40, 4, caption);
    dialog.word(9).text(u"Courier");
    standardItem(dialog, 1, first, "sixsix");
    dialog.align().doubleWord(0).doubleWord(0).words({1, 2, 3, 4, 2}).text(u"{T_Short}").words({0xFFFF, 99, 0});
    standardItem(dialog, 3, u"", "odd");
    standardItem(dialog, 4, last);
    return dialog;
}

TemplateBuilder extendedDialog(std::u16string_view caption, std::u16string_view first, std::u16string_view last) {
    TemplateBuilder dialog = extendedHeader(0x48, 3, caption);
    dialog.words({9, 400, 0x0100}).text(u"{T_Short}");
    extendedItem(dialog, 1, first, "sixsix");
    extendedItem(dialog, 2, u"plain", "odd");
    extendedItem(dialog, 0xFFFFFFFF, last);
    return dialog;
}

} // namespace

TEST(PrepareDialogResource, LeavesADialogWithoutKnownKeysAlone) {
    for (const TemplateBuilder& dialog :
         {standardDialog(u"Caption", u"{T_Empty}", u"{T_Unknown}"), extendedDialog(u"", u"{", u"}"),
          standardHeader(0, 0, u""), extendedHeader(0, 0, u"x")}) {
        EXPECT_EQ(rewrite(dialog).status, PrepUnchanged);
        // Not even a byte behind the dialog makes a difference.
        EXPECT_EQ(rewrite(TemplateBuilder(dialog).bytes("\xFF")).status, PrepUnchanged);
    }
    TemplateBuilder odd = standardHeader(0, 1, u"Caption");
    standardItem(odd, 1, u"Name", "odd");
    EXPECT_EQ(rewrite(odd.bytes("\xFF")).status, PrepUnchanged);
}

TEST(PrepareDialogResource, ExpandsCaptionAndTitlesAndNothingElse) {
    for (const auto& form : {standardDialog, extendedDialog}) {
        EXPECT_TRUE(rewrite(form(u"{T_Long}", u"a {T_Short} b", u"{t_short}{T_Long}"))
                        .is(form(u"A longer translation", u"a S b", u"SA longer translation")));
        // A title that is one unit longer moves the padding.
        EXPECT_TRUE(rewrite(form(u"", u"{T_Short}", u"x")).is(form(u"", u"S", u"x")));
        EXPECT_TRUE(rewrite(form(u"", u"{T_Two}", u"x")).is(form(u"", u"SS", u"x")));
    }
}

TEST(PrepareDialogResource, PutsTheSystemsFontInPlaceOfMsShellDlgAlone) {
    std::wstring face;
    std::uint16_t points = 0;
    SystemDialogFont(face, points);
    ASSERT_FALSE(face.empty());

    TemplateBuilder standard = standardHeader(0x40, 0, u"c");
    TemplateBuilder expected = standard;
    standard.word(7).text(u"ms shell DLG");
    expected.word(points).text(unitsFromWide(face));
    EXPECT_TRUE(rewrite(standard).is(expected));

    for (const std::uint32_t style : {0x08U, 0x40U, 0x48U}) {
        TemplateBuilder extended = extendedHeader(style, 1, u"c");
        expected = extended;
        extended.words({7, 700, 0x0201}).text(u"MS Shell Dlg");
        extendedItem(extended, 5, u"t");
        expected.words({points, 700, 0x0201}).text(unitsFromWide(face));
        extendedItem(expected, 5, u"t");
        EXPECT_TRUE(rewrite(extended).is(expected)) << style;
    }

    TemplateBuilder other = standardHeader(0x40, 0, u"c");
    other.word(8).text(u"MS Shell Dlg 2");
    EXPECT_EQ(rewrite(other).status, PrepUnchanged);
    EXPECT_EQ(rewrite(standardHeader(0x08, 0, u"c")).status, PrepUnchanged) << "the standard form has no font then";
}

TEST(PrepareDialogResource, FailsWhereTheBytesEndTooSoonAndNeverReadsOutsideThem) {
    for (const auto& form : {standardDialog, extendedDialog}) {
        expectFailureAtEveryCut<PrepareDialogResource>(form(u"{T_Long}", u"{T_Short}", u"end").get());
        tryEveryByteValue<PrepareDialogResource>(form(u"{T_Short}", u"t", u"u").get());
    }
    EXPECT_EQ(rewrite(standardHeader(0, 65535, u"")).status, PrepFailed);
    void* block = nullptr;
    EXPECT_EQ(PrepareDialogResource(nullptr, &block), PrepFailed);
    EXPECT_EQ(PrepareDialogResource("", 0, nullptr), PrepFailed);
}

TEST(PrepareDialogResource, ReadsNoElementThatBeginsBeyondTheRange) {
    const auto longDialog = [](unsigned items) {
        TemplateBuilder dialog = standardHeader(0, items, u"{T_Short}");
        for (unsigned i = 0; i < items; ++i) standardItem(dialog, i, u"0123456789012345678901234567");
        return dialog;
    };
    EXPECT_EQ(rewrite(longDialog(700)).status, PrepReplaced);
    EXPECT_EQ(rewrite(longDialog(900)).status, PrepFailed);
}
