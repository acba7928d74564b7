#include "wedge/resources/DialogReader.h"

#include "tests/support/DialogTemplateBuilder.h"
#include "tests/support/Rewritten.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cwctype>
#include <utility>

// The keys and their texts are in UnitTests1033.lng.

namespace eq {

namespace {

using Text = std::u16string_view;

/// Returns a dialog with texts and creation data of every alignment, and with keys in fields that are not translated.
TemplateBuilder dialog(bool extended, Text caption, Text first, Text last) {
    const std::vector<DialogItem> items = {
        {u"\x82", 1, 0, first, "sixsix"},
        {u"{T_Short}", 2, 0, u"plain", "odd"},
        {u"Static", 0xFFFFFFFF, 0, u"", ""},
        {u"Static", 3, 0, last, "odd"},
    };
    return DialogTemplateBuilder(extended, DS_SETFONT, items, caption, 9, u"{T_Short}").bytes();
}

TemplateBuilder dialogWithFont(bool extended, DWORD style, unsigned points, Text face) {
    return DialogTemplateBuilder(extended, style, {{u"\x82", 1, 0}}, u"c", points, face).bytes();
}

} // namespace

TEST(PrepareDialogResource, ExpandsOnlyTheCaptionAndTheTitles) {
    for (const bool extended : {false, true}) {
        TemplateBuilder unknown = dialog(extended, u"{", u"{T_Empty}", u"{T_Unknown}");
        EXPECT_EQ(statusOf(PrepareDialogResource, unknown.bytes("\xFF")), PrepUnchanged)
            << "bytes after the template make no difference";
        // A title that shrinks by an odd number of units moves the padding.
        EXPECT_TRUE(replaces(PrepareDialogResource,
                             dialog(extended, u"{T_Long}", u"{t_short}, {T_Two}", u"{T_Unknown}"),
                             dialog(extended, u"A longer translation", u"S, SS", u"{T_Unknown}")));
    }
}

TEST(PrepareDialogResource, RefusesAnItemBeyondItsRange) {
    for (const auto& [size, status] : {std::pair{0xFF00U, PrepReplaced}, {0xFFFFU, PrepFailed}}) {
        const std::string data(size, 'x');
        const std::vector<DialogItem> items = {{u"Static", 1, 0, u"", data}, {u"Static", 2, 0, u"{T_Short}"}};
        EXPECT_EQ(statusOf(PrepareDialogResource, DialogTemplateBuilder(true, 0, items).bytes()), status) << size;
    }
}

TEST(PrepareDialogResource, ReplacesOnlyMsShellDlgByTheSystemsFont) {
    std::wstring face;
    std::uint16_t points = 0;
    SystemDialogFont(face, points);
#ifndef _WIN32
    EXPECT_EQ(face, L"Tahoma");
    EXPECT_EQ(points, 8) << "11 pixels at 96 dots per inch";
#endif
    for (const auto& [extended, style] : {std::pair{false, 0x40U}, {true, 0x08U}, {true, 0x40U}, {true, 0x48U}}) {
        EXPECT_TRUE(replaces(PrepareDialogResource, dialogWithFont(extended, style, 7, u"ms shell DLG"),
                             dialogWithFont(extended, style, points, std::u16string(face.begin(), face.end()))))
            << extended << style;
    }
    EXPECT_EQ(statusOf(PrepareDialogResource, dialogWithFont(false, 0x40, 8, u"MS Shell Dlg 2")), PrepUnchanged);
    EXPECT_EQ(statusOf(PrepareDialogResource, dialogWithFont(false, 0x08, 8, u"MS Shell Dlg")), PrepUnchanged);
#ifndef _WIN32
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    const auto longS = static_cast<wchar_t>(std::towupper(L'\u017F'));
    const PrepStatus status = statusOf(PrepareDialogResource, dialogWithFont(false, 0x40, 8, u"M\u017F Shell Dlg"));
    std::setlocale(LC_CTYPE, "C");
    EXPECT_EQ(longS, L'S') << "the locale folds this letter";
    EXPECT_EQ(status, PrepUnchanged) << "the comparison does not depend on the locale";
#endif
}

} // namespace eq
