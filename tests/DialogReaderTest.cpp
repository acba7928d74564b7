#include "wedge/resources/DialogReader.h"

#include "tests/support/DialogTemplateBuilder.h"
#include "tests/support/Rewritten.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cwctype>

namespace eq {

namespace {

bool hasFont = true;

} // namespace

int realGetObject(HGDIOBJ object, int size, void* buffer) asm("__real_GetObjectA");
int getObject(HGDIOBJ object, int size, void* buffer) asm("__wrap_GetObjectA");
int getObject(HGDIOBJ object, int size, void* buffer) {
    return hasFont ? realGetObject(object, size, buffer) : 0;
}

TEST(SystemDialogFont, IsTheSystemsFontInPoints) {
    std::wstring face;
    std::uint16_t points = 0;
    SystemDialogFont(face, points);
    EXPECT_EQ(face, L"Tahoma");
    EXPECT_EQ(points, 8) << "11 pixels at 96 dots per inch";
}

TEST(DialogReader, ReadsAnyNumberOfTemplates) {
    const DialogTemplateBuilder changed(false, 0, {}, u"{T_Short}");
    const DialogTemplateBuilder unchanged(false, 0, {});
    DialogReaderStandard reader;
    EXPECT_TRUE(reader.IsBad());
    for (const DialogTemplateBuilder& dialog : {changed, unchanged}) {
        const std::string& bytes = dialog.bytes().get();
        reader.Read(bytes.data(), bytes.size());
        EXPECT_EQ(reader.IsChanged(), reader.GetOutput() != bytes);
        EXPECT_FALSE(reader.IsBad());
        EXPECT_THROW(reader.Read(bytes.data(), 3), EndOfData);
        EXPECT_TRUE(reader.IsBad());
    }
}

TEST(PrepareDialogResource, KeepsTheFontIfTheSystemHasNone) {
    const DialogTemplateBuilder dialog(true, DS_SETFONT, {});
    hasFont = false;
    EXPECT_EQ(statusOf(PrepareDialogResource, dialog.bytes()), PrepUnchanged);
    hasFont = true;
    EXPECT_EQ(statusOf(PrepareDialogResource, dialog.bytes()), PrepReplaced);
}

TEST(PrepareDialogResource, ComparesTheFontInTheSameWayInEachLocale) {
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    const auto longS = static_cast<wchar_t>(std::towupper(L'\u017F'));
    const DialogTemplateBuilder dialog(false, DS_SETFONT, {}, u"c", 8, u"M\u017F Shell Dlg");
    const PrepStatus status = statusOf(PrepareDialogResource, dialog.bytes());
    std::setlocale(LC_CTYPE, "C");
    EXPECT_EQ(longS, L'S') << "the locale folds this letter";
    EXPECT_EQ(status, PrepUnchanged);
}

} // namespace eq
