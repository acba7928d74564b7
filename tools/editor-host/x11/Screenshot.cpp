#include "tools/editor-host/x11/Screenshot.h"

#include "tools/common/Errors.h"

#include <cstdlib>
#include <memory>

#include <cairo.h>

namespace eq {

void writeScreenshot(xcb_connection_t* connection, xcb_window_t window, int width, int height,
                     const std::string& path) {
    constexpr std::uint32_t AllPlanes = 0xFFFFFFFF;
    const auto cookie = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0,
                                      static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), AllPlanes);
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> image(
        xcb_get_image_reply(connection, cookie, nullptr), std::free);
    const int stride = cairo_format_stride_for_width(CAIRO_FORMAT_RGB24, width);
    if (!image || xcb_get_image_data_length(image.get()) < stride * height)
        throw FileError(path + ": the display cannot provide a picture of the window");
    cairo_surface_t* const surface =
        cairo_image_surface_create_for_data(xcb_get_image_data(image.get()), CAIRO_FORMAT_RGB24, width, height, stride);
    const cairo_status_t status = cairo_surface_write_to_png(surface, path.c_str());
    cairo_surface_destroy(surface);
    if (status != CAIRO_STATUS_SUCCESS) throw FileError(path + ": the picture cannot be written there");
}

} // namespace eq
