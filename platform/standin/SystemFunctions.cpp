#include "platform/standin/SystemFunctions.h"

#include "platform/standin/Resources.h"
#include "platform/standin/SystemEntries.h"
#include "platform/standin/TrackbarProcedure.h"

#include <algorithm>
#include <array>

namespace {

struct SystemFunction {
    std::string_view owner; // the system library
    std::string_view name;
    FARPROC function;
};

template <typename Function>
FARPROC erased(Function* function) noexcept {
    // By way of the type that stands for any function.
    return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function));
}

const std::array systemFunctions = {
    SystemFunction{"kernel32", "FindResourceExA", erased(&standin::findResourceExA)},
    SystemFunction{"kernel32", "FindResourceExW", erased(&standin::findResourceExW)},
    SystemFunction{"kernel32", "LoadResource", erased(&standin::loadResource)},
    SystemFunction{"user32", "DestroyAcceleratorTable", erased(&standin::destroyAcceleratorTable)},
    SystemFunction{"user32", "MessageBoxExA", erased(&standin::showMessageBoxExA)},
    SystemFunction{"user32", "MessageBoxExW", erased(&standin::showMessageBoxExW)},
    SystemFunction{"comctl32", "CreatePropertySheetPageA", erased(&standin::createPropertySheetPageA)},
    SystemFunction{"comctl32", "CreatePropertySheetPageW", erased(&standin::createPropertySheetPageW)},
    SystemFunction{"comctl32", "DestroyPropertySheetPage", erased(&standin::destroyPropertySheetPage)},
    SystemFunction{"comctl32", "PropertySheetA", erased(&standin::propertySheetA)},
    SystemFunction{"comctl32", "PropertySheetW", erased(&standin::propertySheetW)},
};

// The address of a library's entry is its handle, which no module that is really loaded can have.
constexpr std::array<std::string_view, 3> libraries = {"kernel32", "user32", "comctl32"};

HMODULE moduleOf(const std::string_view* library) noexcept {
    return reinterpret_cast<HMODULE>(const_cast<std::string_view*>(library));
}

bool isInProcess(std::string_view library) noexcept {
    return library != "comctl32" || standin::areCommonControlsRegistered();
}

} // namespace

namespace standin {

HMODULE findSystemLibrary(std::string_view name) noexcept {
    const auto* const found = std::find(libraries.begin(), libraries.end(), name);
    return found == libraries.end() || !isInProcess(*found) ? nullptr : moduleOf(found);
}

FARPROC findSystemFunction(HMODULE library, std::string_view name) noexcept {
    if (!library) return nullptr;
    const auto* const found = std::find_if(systemFunctions.begin(), systemFunctions.end(), [&](const auto& row) {
        return findSystemLibrary(row.owner) == library && row.name == name;
    });
    return found == systemFunctions.end() ? nullptr : found->function;
}

} // namespace standin
