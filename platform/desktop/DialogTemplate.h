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
    /// Returns the name in the form that the window functions accept, or null if it is empty.
    [[nodiscard]] LPCWSTR get() const noexcept { return name.empty() ? handleOfNumber<LPCWSTR>(number) : name.c_str(); }
};

/// A rectangle in dialog units.
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

/// Returns the content of a template in the standard or the extended form. Items point to their creation data in the
/// template.
DialogTemplate readDialogTemplate(const void* dialog);

/// Creates a dialog from a template as CreateDialogIndirectParamW does.
HWND createDialog(HINSTANCE module, const DialogTemplate& read, HWND parent, DLGPROC procedure, LPARAM parameter);

} // namespace eq::standin
