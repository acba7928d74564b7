#pragma once

#include "platform/win32.h"

#include <string>

namespace eq {

/// Writes what a window's client area shows to a PNG file. Throws FileError.
void writeScreenshot(HWND window, const std::string& path);

} // namespace eq
