#pragma once

#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

namespace eq {

/// Frees a reply or an event of xcb.
struct XFree {
    void operator()(void* memory) const noexcept { std::free(memory); }
};
template <typename T>
using XOwned = std::unique_ptr<T, XFree>;

/// A connection to the X server that DISPLAY names. Its functions return errors as values. After the connection is
/// lost, each request returns no reply.
class XConnection {
public:
    XConnection() noexcept;
    ~XConnection() { xcb_disconnect(connection); }
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;

    [[nodiscard]] bool isAlive() const noexcept { return xcb_connection_has_error(connection) == 0; }
    /// Returns whether the screen can show pictures of 32 bits per pixel in the byte order of this machine.
    [[nodiscard]] bool canShow() const noexcept { return visual != nullptr; }

    [[nodiscard]] xcb_connection_t* get() const noexcept { return connection; }
    [[nodiscard]] const xcb_screen_t& screen() const noexcept { return *defaultScreen; }
    [[nodiscard]] xcb_visualid_t visualId() const noexcept { return visual->visual_id; }
    [[nodiscard]] static constexpr std::uint8_t depth() noexcept { return 24; }

    /// Returns the scale factor that the user has set for the display: pixels per unit of the design.
    [[nodiscard]] double scale() const;

private:
    void findVisual() noexcept;

    xcb_connection_t* connection;
    const xcb_screen_t* defaultScreen = nullptr;
    const xcb_visualtype_t* visual = nullptr;
};

} // namespace eq
