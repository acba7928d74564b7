#pragma once

#include "curve/model/EditorLayout.h"
#include "curve/window/XConnection.h"

#include <cstdint>
#include <vector>

namespace eq {

/// The editor's window, a child of the host's. The host resizes it. It does not follow the size of the host's window by
/// itself: some hosts fit their window to the editor and some pixels, and both would grow without end.
class CurveWindow {
public:
    /// Creates and shows a window of the default size. `isOpen` is false if there is no such host's window.
    CurveWindow(XConnection& connection, xcb_window_t hostWindow, double scale);
    ~CurveWindow();
    CurveWindow(const CurveWindow&) = delete;
    CurveWindow& operator=(const CurveWindow&) = delete;

    [[nodiscard]] bool isOpen() const noexcept { return window != XCB_NONE; }
    [[nodiscard]] xcb_window_t id() const noexcept { return window; }
    [[nodiscard]] xcb_window_t parent() const noexcept { return hostWindow; }
    [[nodiscard]] int width() const noexcept { return currentWidth; }
    [[nodiscard]] int height() const noexcept { return currentHeight; }

    /// Returns whether the event has changed the size of the window. A new size of the host's window is passed on to
    /// the window.
    bool configure(const xcb_configure_notify_event_t& event);
    void resize(int width, int height);
    /// The server has destroyed the window, as it does with the children of a window that the host destroys.
    void forget() noexcept { window = XCB_NONE; }

    void takeKeyboard(xcb_timestamp_t time);
    /// Passes a key on that the editor does not use.
    void sendToHost(const xcb_key_press_event_t& event);

    /// Shows a rectangle of a picture of 32 bits per pixel.
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
    std::vector<unsigned char> rows; ///< of the rectangle that is being shown
};

} // namespace eq
