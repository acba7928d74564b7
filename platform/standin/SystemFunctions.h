#pragma once

#include "platform/standin/Types.h"

#include <string_view>

// The system's own libraries, which are found by name at run time. Their functions are rows of one table.

namespace standin {

/// A system library by its name, or null. "comctl32" is in the process once the common controls are registered.
HMODULE findSystemLibrary(std::string_view name) noexcept;

/// A function of a system library, or null.
FARPROC findSystemFunction(HMODULE library, std::string_view name) noexcept;

} // namespace standin
