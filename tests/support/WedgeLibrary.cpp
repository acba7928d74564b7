// A library with resources and the wedge. Tests load and unload the library as a host does.

#include "platform/SystemHandles.h"
#include "tests/support/TestWindows.h"
#include "wedge/CLanguageStore.h"
#include "wedge/OwnModule.h"

#include <memory>
#include <type_traits>

namespace eq {

#ifdef _WIN32
#define EQ_EXPORT __declspec(dllexport)
#else
#define EQ_EXPORT __attribute__((visibility("default")))
#endif

namespace {

struct MenuDestroyer {
    void operator()(HMENU menu) const { DestroyMenu(menu); }
};
using MenuOwner = std::unique_ptr<std::remove_pointer_t<HMENU>, MenuDestroyer>;

} // namespace

/// Returns whether a resource of each type can be opened with its translation. Does not destroy the accelerator table.
extern "C" EQ_EXPORT bool openOneOfEach() {
    const HMODULE module = ownModule();
    const Window dialog(CreateDialogParamW(module, MAKEINTRESOURCEW(141), nullptr, ignoreMessage, 0));
    const MenuOwner menu(LoadMenuW(module, MAKEINTRESOURCEW(201)));
    wchar_t text[16];
    return textOf(dialog.get()) == L"S: A longer translation" && menu && LoadStringW(module, 15, text, 16) == 10 &&
           LoadAcceleratorsW(module, MAKEINTRESOURCEW(301)) != nullptr;
}

extern "C" EQ_EXPORT WORD languageOfTheStore() {
    return GetLanguageId();
}

} // namespace eq
