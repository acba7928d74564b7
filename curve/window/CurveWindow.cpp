#include "curve/window/CurveWindow.h"

#include "curve/window/SigpipeGuard.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace eq {

namespace {

constexpr std::size_t PixelBytes = 4;

constexpr std::uint32_t EventMask = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                    XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                                    XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_LEAVE_WINDOW |
                                    XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_FOCUS_CHANGE;

int scaled(int length, double scale) {
    return static_cast<int>(std::lround(length * scale));
}

} // namespace

CurveWindow::CurveWindow(XConnection& connection, xcb_window_t host, double scale) : x(connection), hostWindow(host) {
    const XOwned<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(x.get(), xcb_get_geometry(x.get(), hostWindow), nullptr));
    if (!geometry) return;
    currentWidth = scaled(DefaultEditorWidth, scale);
    currentHeight = scaled(DefaultEditorHeight, scale);
    if (!create(scale)) window = XCB_NONE;
}

CurveWindow::~CurveWindow() {
    const SigpipeGuard guard;
    if (window != XCB_NONE) xcb_destroy_window(x.get(), window);
    if (graphics != XCB_NONE) xcb_free_gc(x.get(), graphics);
    if (colours != XCB_NONE) xcb_free_colormap(x.get(), colours);
    // Wait until the server has destroyed the window, because the host may then destroy its own window.
    const XOwned<xcb_get_input_focus_reply_t> done(
        xcb_get_input_focus_reply(x.get(), xcb_get_input_focus(x.get()), nullptr));
}

bool CurveWindow::create(double scale) {
    colours = xcb_generate_id(x.get());
    xcb_create_colormap(x.get(), XCB_COLORMAP_ALLOC_NONE, colours, x.screen().root, x.visualId());
    window = xcb_generate_id(x.get());
    // The window has no background, so that the server keeps the old picture until the new picture arrives.
    const std::array<std::uint32_t, 4> values = {XCB_BACK_PIXMAP_NONE, 0, EventMask, colours};
    const auto created = xcb_create_window_checked(
        x.get(), XConnection::depth(), window, hostWindow, 0, 0, static_cast<std::uint16_t>(currentWidth),
        static_cast<std::uint16_t>(currentHeight), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, x.visualId(),
        XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, values.data());
    const XOwned<xcb_generic_error_t> error(xcb_request_check(x.get(), created));
    if (error || !x.isAlive()) return false;
    graphics = xcb_generate_id(x.get());
    xcb_create_gc(x.get(), graphics, window, 0, nullptr);
    setProperties(scale);
    xcb_map_window(x.get(), window);
    xcb_flush(x.get());
    return true;
}

void CurveWindow::setProperties(double scale) {
    // A host's toolkit reads two properties of a window that it embeds: whether the window may be shown (XEmbed), and
    // its least size.
    const xcb_atom_t embedding = atom("_XEMBED_INFO");
    const std::array<std::uint32_t, 2> embeddingInfo = {0, 1}; // version, mapped
    if (embedding != XCB_ATOM_NONE)
        xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, window, embedding, embedding, 32, embeddingInfo.size(),
                            embeddingInfo.data());
    constexpr std::uint32_t LeastSize = 1 << 4;
    constexpr std::uint32_t BaseSize = 1 << 8;
    std::array<std::uint32_t, 18> hints{};
    hints[0] = LeastSize | BaseSize;
    hints[5] = static_cast<std::uint32_t>(scaled(LeastEditorWidth, scale));
    hints[6] = static_cast<std::uint32_t>(scaled(LeastEditorHeight, scale));
    hints[15] = static_cast<std::uint32_t>(currentWidth);
    hints[16] = static_cast<std::uint32_t>(currentHeight);
    xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32,
                        hints.size(), hints.data());
}

xcb_atom_t CurveWindow::atom(const char* name) {
    const auto cookie = xcb_intern_atom(x.get(), 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const XOwned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(x.get(), cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

bool CurveWindow::configure(const xcb_configure_notify_event_t& event) {
    if (event.window != window || (event.width == currentWidth && event.height == currentHeight)) return false;
    currentWidth = event.width;
    currentHeight = event.height;
    return true;
}

void CurveWindow::resize(int width, int height) {
    if (!isOpen()) return;
    const std::array<std::uint32_t, 2> size = {static_cast<std::uint32_t>(std::max(width, 1)),
                                               static_cast<std::uint32_t>(std::max(height, 1))};
    xcb_configure_window(x.get(), window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size.data());
}

void CurveWindow::takeKeyboard(xcb_timestamp_t time) {
    xcb_set_input_focus(x.get(), XCB_INPUT_FOCUS_PARENT, window, time);
}

void CurveWindow::sendToHost(const xcb_key_press_event_t& event) {
    // A key event that a program sent may come from the host. If the window returned such an event, the host might send
    // it again without end.
    if ((event.response_type & 0x80) != 0) return;
    xcb_key_press_event_t copy = event;
    copy.event = hostWindow;
    copy.child = window;
    const bool isRelease = event.response_type == XCB_KEY_RELEASE;
    std::array<char, 32> bytes{};
    std::memcpy(bytes.data(), &copy, sizeof copy);
    xcb_send_event(x.get(), 1, hostWindow, isRelease ? XCB_EVENT_MASK_KEY_RELEASE : XCB_EVENT_MASK_KEY_PRESS,
                   bytes.data());
}

void CurveWindow::show(const unsigned char* pixels, int bytesPerRow, const Rect& part) {
    const int width = std::min(part.right(), currentWidth) - part.x;
    const int height = std::min(part.bottom(), currentHeight) - part.y;
    if (!isOpen() || width <= 0 || height <= 0) return;
    const std::size_t rowBytes = static_cast<std::size_t>(width) * PixelBytes;
    // The server limits the length of a request, and the header of the request counts.
    const std::size_t most = std::size_t{xcb_get_maximum_request_length(x.get())} * 4 - sizeof(xcb_put_image_request_t);
    const int rowsPerRequest = static_cast<int>(std::clamp<std::size_t>(most / rowBytes, 1, 1 << 14));
    for (int done = 0; done < height; done += rowsPerRequest) {
        const int count = std::min(rowsPerRequest, height - done);
        rows.resize(rowBytes * static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            std::memcpy(&rows[static_cast<std::size_t>(i) * rowBytes],
                        pixels + static_cast<std::ptrdiff_t>(part.y + done + i) * bytesPerRow +
                            static_cast<std::ptrdiff_t>(part.x) * static_cast<std::ptrdiff_t>(PixelBytes),
                        rowBytes);
        xcb_put_image(x.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, graphics, static_cast<std::uint16_t>(width),
                      static_cast<std::uint16_t>(count), static_cast<std::int16_t>(part.x),
                      static_cast<std::int16_t>(part.y + done), 0, XConnection::depth(),
                      static_cast<std::uint32_t>(rows.size()), rows.data());
    }
}

} // namespace eq
