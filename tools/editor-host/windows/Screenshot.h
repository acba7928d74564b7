#pragma once

#include "platform/win32.h"

#include <string>

namespace eq {

/// Writes a picture of a window's client area to a PNG file. Throws FileError.
void writeScreenshot(HWND window, const std::string& path);

} // namespace eq
