#pragma once

#include <string>

#include <xcb/xcb.h>

namespace eq {

/// Writes a picture of a window to a PNG file. Throws FileError.
void writeScreenshot(xcb_connection_t* connection, xcb_window_t window, int width, int height, const std::string& path);

} // namespace eq
