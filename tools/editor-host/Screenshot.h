#pragma once

#include "platform/win32.h"

#include <string>

/// Writes what a window's client area shows to a PNG file. Throws tool::FileError.
void writeScreenshot(HWND window, const std::string& path);
