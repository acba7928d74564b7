#include "curve/window/XConnection.h"

#include "curve/model/DisplayScale.h"

#include <bit>
#include <string_view>

namespace eq {

XConnection::XConnection() noexcept {
    int number = 0;
    connection = xcb_connect(nullptr, &number);
    if (!isAlive()) return;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 1 && number > 0; --number) xcb_screen_next(&screens);
    defaultScreen = screens.data;
    findVisual();
}

void XConnection::findVisual() noexcept {
    constexpr bool IsLittle = std::endian::native == std::endian::little;
    const xcb_setup_t* const setup = xcb_get_setup(connection);
    if ((setup->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST) != IsLittle) return;
    bool has32Bits = false;
    for (auto formats = xcb_setup_pixmap_formats_iterator(setup); formats.rem > 0; xcb_format_next(&formats))
        has32Bits = has32Bits || (formats.data->depth == depth() && formats.data->bits_per_pixel == 32);
    if (!has32Bits) return;
    for (auto depths = xcb_screen_allowed_depths_iterator(defaultScreen); depths.rem > 0; xcb_depth_next(&depths)) {
        if (depths.data->depth != depth()) continue;
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0; xcb_visualtype_next(&visuals)) {
            const xcb_visualtype_t& candidate = *visuals.data;
            const bool fits = candidate._class == XCB_VISUAL_CLASS_TRUE_COLOR && candidate.red_mask == 0xFF0000 &&
                              candidate.green_mask == 0x00FF00 && candidate.blue_mask == 0x0000FF;
            if (fits && (!visual || candidate.visual_id == defaultScreen->root_visual)) visual = visuals.data;
        }
    }
}

double XConnection::scale() const {
    constexpr std::uint32_t Most = 1 << 16; // in units of four bytes
    const auto cookie =
        xcb_get_property(connection, 0, screen().root, XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 0, Most);
    const XOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply) return 1.0;
    return displayScaleOf({static_cast<const char*>(xcb_get_property_value(reply.get())),
                           static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))});
}

} // namespace eq
