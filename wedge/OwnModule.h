#pragma once

#include "platform/win32.h"

namespace eq {

/// The library's own module: the one that holds its resources, and whose folder holds the language files. Unless set,
/// it is the module that this function lies in.
[[nodiscard]] HINSTANCE ownModule() noexcept;

/// States the module, as the library's load function is told it.
void setOwnModule(HINSTANCE module) noexcept;

} // namespace eq
