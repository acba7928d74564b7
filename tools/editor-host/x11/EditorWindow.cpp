#include "tools/common/Errors.h"
#include "tools/editor-host/Platform.h"
#include "tools/editor-host/x11/Screenshot.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

namespace eq {

namespace {

constexpr int IdleMilliseconds = 30;
constexpr const char* Title = "Parametric Equalizer";

struct Free {
    void operator()(void* memory) const noexcept { std::free(memory); }
};

double secondsSinceStart() {
    using Clock = std::chrono::steady_clock;
    static const Clock::time_point start = Clock::now();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// A window that contains the editor. Its timer sends idle calls to the effect.
class EditorWindow {
public:
    EditorWindow(HostedEditor& editor, const WindowOptions& options) : m_editor(editor), m_options(options) {
        if (xcb_connection_has_error(m_x.get()) != 0)
            throw FileError("the window cannot be created: is there a display?");
        const ERect size = editor.size();
        m_width = size.right - size.left;
        m_height = size.bottom - size.top;
        create();
        if (!editor.open(reinterpret_cast<void*>(std::uintptr_t{m_window})))
            throw FileError("the effect cannot open its editor");
    }
    ~EditorWindow() {
        m_editor.close();
        xcb_destroy_window(m_x.get(), m_window);
        xcb_flush(m_x.get());
    }
    EditorWindow(const EditorWindow&) = delete;
    EditorWindow& operator=(const EditorWindow&) = delete;

    void run() {
        secondsSinceStart();
        while (!m_isClosed && xcb_connection_has_error(m_x.get()) == 0) {
            pollfd descriptor = {xcb_get_file_descriptor(m_x.get()), POLLIN, 0};
            poll(&descriptor, 1, IdleMilliseconds);
            while (const std::unique_ptr<xcb_generic_event_t, Free> event{xcb_poll_for_event(m_x.get())})
                handle(*event);
            onTimer();
        }
    }

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const noexcept { xcb_disconnect(connection); }
    };

    void create() {
        const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(m_x.get())).data;
        m_window = xcb_generate_id(m_x.get());
        const std::array<std::uint32_t, 2> values = {screen.black_pixel, XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                                                             XCB_EVENT_MASK_FOCUS_CHANGE |
                                                                             XCB_EVENT_MASK_KEY_PRESS};
        xcb_create_window(m_x.get(), XCB_COPY_FROM_PARENT, m_window, screen.root, 0, 0,
                          static_cast<std::uint16_t>(m_width), static_cast<std::uint16_t>(m_height), 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen.root_visual, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK,
                          values.data());
        setText(XCB_ATOM_WM_NAME, Title);
        setText(XCB_ATOM_WM_CLASS, "editor-host");
        m_protocols = atom("WM_PROTOCOLS");
        m_deleteWindow = atom("WM_DELETE_WINDOW");
        xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, m_window, m_protocols, XCB_ATOM_ATOM, 32, 1,
                            &m_deleteWindow);
        xcb_map_window(m_x.get(), m_window);
        xcb_flush(m_x.get());
    }

    void setText(xcb_atom_t property, const char* text) {
        xcb_change_property(m_x.get(), XCB_PROP_MODE_REPLACE, m_window, property, XCB_ATOM_STRING, 8,
                            static_cast<std::uint32_t>(std::strlen(text)), text);
    }

    xcb_atom_t atom(const char* name) {
        const auto cookie = xcb_intern_atom(m_x.get(), 0, static_cast<std::uint16_t>(std::strlen(name)), name);
        const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(xcb_intern_atom_reply(m_x.get(), cookie, nullptr));
        return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }

    void handle(const xcb_generic_event_t& event) {
        switch (event.response_type & 0x7F) {
        case XCB_CONFIGURE_NOTIFY: {
            const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
            m_width = configure.width;
            m_height = configure.height;
            resizeEditor();
            break;
        }
        case XCB_FOCUS_IN:
            if (reinterpret_cast<const xcb_focus_in_event_t&>(event).detail != XCB_NOTIFY_DETAIL_INFERIOR)
                focusEditor();
            break;
        case XCB_KEY_PRESS:
            if (!m_options.log) break;
            std::printf("key for the host: %d\n", reinterpret_cast<const xcb_key_press_event_t&>(event).detail);
            std::fflush(stdout);
            break;
        case XCB_CLIENT_MESSAGE: {
            const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
            m_isClosed = message.type == m_protocols && message.data.data32[0] == m_deleteWindow;
            break;
        }
        case XCB_DESTROY_NOTIFY:
            m_isClosed = true;
            break;
        default:
            break;
        }
    }

    /// Returns the editor's window, which the effect has created in this window, or XCB_NONE.
    xcb_window_t child() {
        const std::unique_ptr<xcb_query_tree_reply_t, Free> tree(
            xcb_query_tree_reply(m_x.get(), xcb_query_tree(m_x.get(), m_window), nullptr));
        const bool isThere = tree && xcb_query_tree_children_length(tree.get()) > 0;
        return isThere ? xcb_query_tree_children(tree.get())[0] : xcb_window_t{XCB_NONE};
    }

    /// Sets the keyboard focus to the editor, as hosts do while their window is active.
    void focusEditor() {
        xcb_set_input_focus(m_x.get(), XCB_INPUT_FOCUS_PARENT, child(), XCB_CURRENT_TIME);
        xcb_flush(m_x.get());
    }

    void resizeEditor() {
        const std::array<std::uint32_t, 2> size = {static_cast<std::uint32_t>(m_width),
                                                   static_cast<std::uint32_t>(m_height)};
        xcb_configure_window(m_x.get(), child(), XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size.data());
        xcb_flush(m_x.get());
    }

    void onTimer() {
        const double now = secondsSinceStart();
        if (m_options.sweep) m_editor.setParameter(*m_options.sweep, sweepAt(now));
        m_editor.idle();
        if (!m_options.seconds || now < *m_options.seconds) return;
        if (m_options.screenshot) writeScreenshot(m_x.get(), m_window, m_width, m_height, *m_options.screenshot);
        m_isClosed = true;
    }

    HostedEditor& m_editor;
    const WindowOptions& m_options;
    const std::unique_ptr<xcb_connection_t, Disconnect> m_x{xcb_connect(nullptr, nullptr)};
    xcb_window_t m_window = XCB_NONE;
    xcb_atom_t m_protocols = XCB_ATOM_NONE;
    xcb_atom_t m_deleteWindow = XCB_ATOM_NONE;
    int m_width = 0;
    int m_height = 0;
    bool m_isClosed = false;
};

} // namespace

void showEditor(HostedEditor& editor, const WindowOptions& options) {
    EditorWindow window(editor, options);
    window.run();
}

std::string libraryBesideProgram() {
    std::array<char, 4096> path{};
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    const std::string program(path.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    return program.substr(0, program.rfind('/') + 1) + "Parametric Equalizer.so";
}

} // namespace eq
