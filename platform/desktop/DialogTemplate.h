#pragma once

#include "platform/desktop/Dialogs.h"
#include "platform/desktop/TemplateCursor.h"

#include <string>
#include <vector>

namespace eq::standin {

/// A name in a template: a text, a number, or neither.
struct NameOrNumber {
    std::wstring name;
    WORD number = 0;

    [[nodiscard]] bool isEmpty() const noexcept { return name.empty() && number == 0; }
    /// As the functions of windows take it; null if it is empty.
    [[nodiscard]] LPCWSTR get() const noexcept { return name.empty() ? handleOfNumber<LPCWSTR>(number) : name.c_str(); }
};

/// In dialog units.
struct UnitRectangle {
    SHORT x;
    SHORT y;
    SHORT width;
    SHORT height;
};

struct ItemTemplate {
    DWORD style;
    DWORD extendedStyle;
    UnitRectangle place;
    DWORD id;
    NameOrNumber windowClass;
    NameOrNumber title;
    const void* creationData; // null if there is none
};

struct DialogTemplate {
    DWORD style;
    DWORD extendedStyle;
    UnitRectangle place;
    NameOrNumber menu;
    NameOrNumber windowClass;
    std::wstring caption;
    std::vector<ItemTemplate> items;
};

/// Reads a template of the standard or the extended form. Creation data stays where it is.
DialogTemplate readDialogTemplate(const void* dialog);

/// Makes a dialog as CreateDialogIndirectParamW does.
HWND createDialog(HINSTANCE module, const DialogTemplate& read, HWND parent, DLGPROC procedure, LPARAM parameter);

} // namespace eq::standin
