#include "platform/desktop/ReplacedFunctions.h"
#include "platform/desktop/TrackbarProcedure.h"
#include "platform/standin/Modules.h"

#include <algorithm>
#include <array>

namespace {

struct ExportedFunction {
    std::string_view owner; // the system library
    std::string_view name;
    FARPROC function;
};

template <typename Function>
FARPROC erased(Function* function) noexcept {
    // The cast through void (*)() avoids the warning about different function types.
    return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function));
}

const std::array SystemFunctions = {
#define EQ_FUNCTION(MODULE, RESULT, NAME, PARAMETERS, BYTES)                                                           \
    ExportedFunction{#MODULE, #NAME, erased(&eq::standin::system::NAME)},
    EQ_REPLACED_FUNCTIONS(EQ_NO_ROW, EQ_FUNCTION)
#undef EQ_FUNCTION
};

// The handle of a system library is the address of its name in this array. No loaded module can have that handle.
constexpr std::array<std::string_view, 3> libraries = {"kernel32", "user32", "comctl32"};

HMODULE moduleOf(const std::string_view* library) noexcept {
    return reinterpret_cast<HMODULE>(const_cast<std::string_view*>(library));
}

bool isInProcess(std::string_view library) noexcept {
    return library != "comctl32" || eq::standin::areCommonControlsRegistered();
}

HMODULE findLibrary(std::string_view name) noexcept {
    const auto* const found = std::find(libraries.begin(), libraries.end(), name);
    return found == libraries.end() || !isInProcess(*found) ? nullptr : moduleOf(found);
}

FARPROC findFunction(HMODULE library, std::string_view name) noexcept {
    if (!library) return nullptr;
    const auto* const found = std::find_if(SystemFunctions.begin(), SystemFunctions.end(), [&](const auto& row) {
        return findLibrary(row.owner) == library && row.name == name;
    });
    return found == SystemFunctions.end() ? nullptr : found->function;
}

constexpr eq::standin::SystemLibraries desktopLibraries = {findLibrary, findFunction};

/// Registers the look-up while the program is loaded.
const struct Registration {
    Registration() noexcept { eq::standin::systemLibraries = &desktopLibraries; }
} Registered;

} // namespace
