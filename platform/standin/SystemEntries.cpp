#include "platform/standin/SystemEntries.h"

#include "platform/standin/MessageBox.h"

// The names for programs without the wedge. They stand alone in this file, so that the linker takes it from the library
// only if nobody else defines them.

int WINAPI MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type) noexcept {
    return standin::showMessageBox(owner, text, caption, type);
}
