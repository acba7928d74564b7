#pragma once

#include "platform/win32.h"

/// The library's own module, from its load on: the one that holds its resources.
HINSTANCE moduleHandle() noexcept;
