#pragma once

#include "platform/win32.h"

namespace eq {

/// Returns the library's own module. The module contains the library's resources, and its folder contains the language
/// files. Without a call of `setOwnModule`, this is the module that contains the code of this function.
[[nodiscard]] HINSTANCE ownModule() noexcept;

/// Sets the library's own module; null removes the setting. The library's load function passes the module that it
/// receives.
void setOwnModule(HINSTANCE module) noexcept;

} // namespace eq
