#pragma once

#include "curve/model/EditorInput.h"
#include "curve/window/XConnection.h"

#include <memory>

#include <xkbcommon/xkbcommon.h>

namespace eq {

/// Converts key events into the editor's keys and texts, with the user's keyboard layout.
class Keyboard {
public:
    explicit Keyboard(XConnection& connection);

    /// Handles an event of the keyboard extension: reads the layout again if it has changed. Returns false for any
    /// other event.
    bool handle(const xcb_generic_event_t& event);
    [[nodiscard]] KeyInput inputOf(const xcb_key_press_event_t& event) const;

private:
    struct Unref {
        void operator()(xkb_context* context) const noexcept { xkb_context_unref(context); }
        void operator()(xkb_keymap* keymap) const noexcept { xkb_keymap_unref(keymap); }
        void operator()(xkb_state* state) const noexcept { xkb_state_unref(state); }
    };

    void readLayout();
    void selectEvents();

    XConnection& x;
    std::uint8_t firstEvent = 0; ///< the event number of the keyboard extension; 0 without the extension
    int device = -1;
    std::unique_ptr<xkb_context, Unref> context;
    std::unique_ptr<xkb_keymap, Unref> keymap;
    std::unique_ptr<xkb_state, Unref> state;
};

} // namespace eq
