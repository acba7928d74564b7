#pragma once

#include "curve/model/EditorLayout.h"
#include "curve/window/XConnection.h"

#include <cstdint>
#include <vector>

namespace eq {

/// The editor's window, a child of the host's window. The host resizes it. It does not follow the size of the host's
/// window, because some hosts make their window some pixels larger than the editor. Both windows would then grow
/// without end.
class CurveWindow {
public:
    /// Creates and shows a window of the default size. `isOpen` then returns false if `hostWindow` does not exist.
    CurveWindow(XConnection& connection, xcb_window_t hostWindow, double scale);
    ~CurveWindow();
    CurveWindow(const CurveWindow&) = delete;
    CurveWindow& operator=(const CurveWindow&) = delete;

    [[nodiscard]] bool isOpen() const noexcept { return window != XCB_NONE; }
    [[nodiscard]] xcb_window_t id() const noexcept { return window; }
    [[nodiscard]] xcb_window_t parent() const noexcept { return hostWindow; }
    [[nodiscard]] int width() const noexcept { return currentWidth; }
    [[nodiscard]] int height() const noexcept { return currentHeight; }

    /// Stores the size from an event of this window. Returns whether the size has changed.
    bool configure(const xcb_configure_notify_event_t& event);
    void resize(int width, int height);
    /// Forgets the window after the server has destroyed it. The server does so when the host destroys its own window.
    void forget() noexcept { window = XCB_NONE; }

    void takeKeyboard(xcb_timestamp_t time);
    /// Sends a key event that the editor does not use to the host's window.
    void sendToHost(const xcb_key_press_event_t& event);

    /// Copies a rectangle of a picture to the window. The picture has 32 bits per pixel.
    void show(const unsigned char* pixels, int bytesPerRow, const Rect& part);

private:
    [[nodiscard]] bool create(double scale);
    void setProperties(double scale);
    [[nodiscard]] xcb_atom_t atom(const char* name);

    XConnection& x;
    xcb_window_t hostWindow;
    xcb_window_t window = XCB_NONE;
    xcb_colormap_t colours = XCB_NONE;
    xcb_gcontext_t graphics = XCB_NONE;
    int currentWidth = 0;
    int currentHeight = 0;
    std::vector<unsigned char> rows; ///< the pixels of one request
};

} // namespace eq
