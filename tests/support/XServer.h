#pragma once

#include "tests/support/LanguageSettings.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

namespace eq {

/// A child process, which the destructor ends.
class ChildProcess {
public:
    explicit ChildProcess(const std::string& command) : m_id(fork()) {
        if (m_id != 0) return;
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        execl("/bin/sh", "sh", "-c", ("exec " + command).c_str(), nullptr);
        _exit(127);
    }
    ~ChildProcess() { end(); }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Ends the process with a signal. Returns the status from `waitpid`, or 0 if the process has already ended.
    int end(int signal = SIGTERM) {
        int status = 0;
        if (m_id <= 0) return status;
        kill(m_id, signal);
        waitpid(m_id, &status, 0);
        m_id = 0;
        return status;
    }

private:
    pid_t m_id;
};

/// An X server without a visible screen. DISPLAY names the server for the life of the object.
class XServer {
public:
    /// `screens` are the options of Xvfb for the screens. A request has at most 1 MB, so that a large picture needs
    /// several requests.
    explicit XServer(const std::string& screens = "-screen 0 1280x1024x24") {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
        m_process = std::make_unique<ChildProcess>("Xvfb -displayfd " + std::to_string(ends[1]) + " " + screens +
                                                   " -maxbigreqsize 1 -noreset -nolisten tcp 2>/dev/null");
        close(ends[1]);
        std::string number;
        for (char c = 0; read(ends[0], &c, 1) == 1 && c != '\n';) number += c;
        close(ends[0]);
        if (number.empty()) throw std::runtime_error("Xvfb does not start");
        m_name = ":" + number;
        m_display.set(m_name);
    }
    /// Names a screen of the server in DISPLAY.
    void choose(int screen) { m_display.set(m_name + "." + std::to_string(screen)); }
    /// Sets the keyboard layouts, for example "us,fr".
    static void useLayouts(const std::string& names) {
        if (std::system(("setxkbmap " + names).c_str()) != 0) // NOLINT(*-command-processor)
            throw std::runtime_error("setxkbmap fails");
    }
    void kill() { m_process->end(SIGKILL); }

private:
    EnvironmentVariable m_display{"DISPLAY"};
    std::string m_name;
    std::unique_ptr<ChildProcess> m_process;
};

/// The reply to a request, or null.
template <typename Content>
struct Reply : std::unique_ptr<Content, void (*)(void*)> {
    explicit Reply(Content* content) : std::unique_ptr<Content, void (*)(void*)>(content, std::free) {}
};

/// A client of the X server, which creates and examines windows.
class XClient {
public:
    /// Connects to the server that DISPLAY names, which may name a screen, too.
    XClient() : m_x(xcb_connect(nullptr, &m_screen)) {}
    ~XClient() { xcb_disconnect(m_x); }
    XClient(const XClient&) = delete;
    XClient& operator=(const XClient&) = delete;

    [[nodiscard]] xcb_connection_t* get() const { return m_x; }
    [[nodiscard]] const xcb_screen_t& screen() const {
        auto screens = xcb_setup_roots_iterator(xcb_get_setup(m_x));
        for (int i = 0; i < m_screen; ++i) xcb_screen_next(&screens);
        return *screens.data;
    }
    [[nodiscard]] xcb_window_t root() const { return screen().root; }

    [[nodiscard]] xcb_window_t makeWindow(std::uint16_t width, std::uint16_t height) const {
        const xcb_window_t window = xcb_generate_id(m_x);
        xcb_create_window(m_x, XCB_COPY_FROM_PARENT, window, root(), 0, 0, width, height, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_map_window(m_x, window);
        sync();
        return window;
    }
    void destroy(xcb_window_t window) const {
        xcb_destroy_window(m_x, window);
        sync();
    }
    [[nodiscard]] std::vector<xcb_window_t> children(xcb_window_t window) const {
        const Reply tree(xcb_query_tree_reply(m_x, xcb_query_tree(m_x, window), nullptr));
        if (!tree) return {};
        const xcb_window_t* const first = xcb_query_tree_children(tree.get());
        return {first, first + tree->children_len};
    }
    [[nodiscard]] std::pair<int, int> size(xcb_window_t window) const {
        const Reply geometry(xcb_get_geometry_reply(m_x, xcb_get_geometry(m_x, window), nullptr));
        return geometry ? std::pair<int, int>(geometry->width, geometry->height) : std::pair(0, 0);
    }
    /// Returns the pixels of a window, row by row, as 0xRRGGBB.
    [[nodiscard]] std::vector<std::uint32_t> picture(xcb_window_t window) const {
        const auto [width, height] = size(window);
        const auto request =
            xcb_get_image(m_x, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0, static_cast<std::uint16_t>(width),
                          static_cast<std::uint16_t>(height), 0xFFFFFF);
        const Reply reply(xcb_get_image_reply(m_x, request, nullptr));
        std::vector<std::uint32_t> pixels(reply ? reply->length : 0);
        if (reply) std::memcpy(pixels.data(), xcb_get_image_data(reply.get()), 4 * pixels.size());
        for (std::uint32_t& pixel : pixels) pixel &= 0xFFFFFF;
        return pixels;
    }
    [[nodiscard]] std::uint32_t pixel(xcb_window_t window, int x, int y) const {
        const auto pixels = picture(window);
        const auto index = static_cast<std::size_t>(y * size(window).first + x);
        return index < pixels.size() ? pixels[index] : 0;
    }
    /// Returns a property that consists of 32-bit numbers.
    [[nodiscard]] std::vector<std::uint32_t> property(xcb_window_t window, const std::string& name) const {
        const auto request = xcb_get_property(m_x, 0, window, atom(name), XCB_ATOM_ANY, 0, 99);
        const Reply reply(xcb_get_property_reply(m_x, request, nullptr));
        std::vector<std::uint32_t> values(reply ? reply->length : 0);
        if (reply) std::memcpy(values.data(), xcb_get_property_value(reply.get()), 4 * values.size());
        return values;
    }
    /// Returns the attributes of a window, or zeros if the window does not exist.
    [[nodiscard]] xcb_get_window_attributes_reply_t attributes(xcb_window_t window) const {
        const Reply reply(xcb_get_window_attributes_reply(m_x, xcb_get_window_attributes(m_x, window), nullptr));
        return reply ? *reply : xcb_get_window_attributes_reply_t{};
    }
    [[nodiscard]] bool isShown(xcb_window_t window) const {
        return attributes(window).map_state == XCB_MAP_STATE_VIEWABLE;
    }
    [[nodiscard]] xcb_window_t focus() const {
        const Reply reply(xcb_get_input_focus_reply(m_x, xcb_get_input_focus(m_x), nullptr));
        return reply ? reply->focus : xcb_window_t{XCB_NONE};
    }
    void resize(xcb_window_t window, std::uint32_t width, std::uint32_t height) const {
        const std::array<std::uint32_t, 2> values = {width, height};
        xcb_configure_window(m_x, window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values.data());
        sync();
    }
    /// Sends an event of the first mouse button, of the pointer or of a key to a window.
    void point(xcb_window_t window, std::uint8_t type, int atX, int atY, std::uint8_t detail = 1,
               std::uint16_t state = 0) const {
        xcb_button_press_event_t event{};
        event.response_type = type;
        event.detail = detail;
        event.state = state;
        event.event = window;
        event.event_x = static_cast<std::int16_t>(atX);
        event.event_y = static_cast<std::int16_t>(atY);
        send(window, event);
    }
    template <typename Event>
    void send(xcb_window_t window, const Event& event) const {
        std::array<char, 32> bytes{};
        std::memcpy(bytes.data(), &event, sizeof event);
        xcb_send_event(m_x, 0, window, XCB_EVENT_MASK_NO_EVENT, bytes.data());
        sync();
    }
    [[nodiscard]] xcb_atom_t atom(const std::string& name) const {
        const auto request = xcb_intern_atom(m_x, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
        const Reply reply(xcb_intern_atom_reply(m_x, request, nullptr));
        return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }
    /// Waits until the server has processed all requests of this client.
    void sync() const { static_cast<void>(focus()); }

private:
    int m_screen = 0;
    xcb_connection_t* m_x;
};

/// Waits until the condition is true, for at most ten seconds. Returns whether the condition has become true.
template <typename Condition>
bool comesTrue(const Condition& condition) {
    for (int turn = 0; turn < 1000; ++turn) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

} // namespace eq
