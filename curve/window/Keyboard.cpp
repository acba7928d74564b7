#include "curve/window/Keyboard.h"

#include <array>

#include <xkbcommon/xkbcommon-x11.h>
// A structure in this header has a member `explicit`, which is a keyword of C++.
#define explicit isExplicit
#include <xcb/xkb.h>
#undef explicit

namespace eq {

namespace {

struct NamedKey {
    xkb_keysym_t symbol;
    EditorKey key;
};
constexpr std::array NamedKeys = {
    NamedKey{XKB_KEY_Tab, EditorKey::Tab},
    NamedKey{XKB_KEY_ISO_Left_Tab, EditorKey::Tab},
    NamedKey{XKB_KEY_Left, EditorKey::Left},
    NamedKey{XKB_KEY_KP_Left, EditorKey::Left},
    NamedKey{XKB_KEY_Right, EditorKey::Right},
    NamedKey{XKB_KEY_KP_Right, EditorKey::Right},
    NamedKey{XKB_KEY_Up, EditorKey::Up},
    NamedKey{XKB_KEY_KP_Up, EditorKey::Up},
    NamedKey{XKB_KEY_Down, EditorKey::Down},
    NamedKey{XKB_KEY_KP_Down, EditorKey::Down},
    NamedKey{XKB_KEY_Page_Up, EditorKey::PageUp},
    NamedKey{XKB_KEY_KP_Page_Up, EditorKey::PageUp},
    NamedKey{XKB_KEY_Page_Down, EditorKey::PageDown},
    NamedKey{XKB_KEY_KP_Page_Down, EditorKey::PageDown},
    NamedKey{XKB_KEY_Home, EditorKey::Home},
    NamedKey{XKB_KEY_KP_Home, EditorKey::Home},
    NamedKey{XKB_KEY_End, EditorKey::End},
    NamedKey{XKB_KEY_KP_End, EditorKey::End},
    NamedKey{XKB_KEY_Delete, EditorKey::Delete},
    NamedKey{XKB_KEY_KP_Delete, EditorKey::Delete},
    NamedKey{XKB_KEY_BackSpace, EditorKey::Backspace},
    NamedKey{XKB_KEY_Return, EditorKey::Enter},
    NamedKey{XKB_KEY_KP_Enter, EditorKey::Enter},
    NamedKey{XKB_KEY_Escape, EditorKey::Escape},
};

constexpr unsigned ModifierBits = 0xFF; ///< the modifiers in an event's state, in the keyboard's order
constexpr unsigned LayoutShift = 13;    ///< the position of the layout's number in an event's state
constexpr unsigned LayoutBits = 3;

} // namespace

Keyboard::Keyboard(XConnection& connection) : x(connection), context(xkb_context_new(XKB_CONTEXT_NO_FLAGS)) {
    const bool hasExtension =
        xkb_x11_setup_xkb_extension(x.get(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                    XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent, nullptr) == 1;
    if (hasExtension) {
        device = xkb_x11_get_core_keyboard_device_id(x.get());
        selectEvents();
    }
    readLayout();
}

void Keyboard::selectEvents() {
    constexpr std::uint16_t Events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t MapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS |
                                       XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_VIRTUAL_MODS;
    xcb_xkb_select_events(x.get(), XCB_XKB_ID_USE_CORE_KBD, Events, 0, Events, MapParts, MapParts, nullptr);
}

void Keyboard::readLayout() {
    if (!context) return;
    if (device >= 0)
        keymap.reset(xkb_x11_keymap_new_from_device(context.get(), x.get(), device, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap) keymap.reset(xkb_keymap_new_from_names(context.get(), nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS));
    state.reset(keymap ? xkb_state_new(keymap.get()) : nullptr);
}

bool Keyboard::handle(const xcb_generic_event_t& event) {
    const auto type = event.response_type & ~0x80;
    if (firstEvent == 0 || type != firstEvent) return false;
    const auto kind = event.pad0; // the extension's number for the kind of event
    if (kind == XCB_XKB_NEW_KEYBOARD_NOTIFY || kind == XCB_XKB_MAP_NOTIFY) readLayout();
    return true;
}

KeyInput Keyboard::inputOf(const xcb_key_press_event_t& event) const {
    KeyInput input;
    input.shift = (event.state & XCB_MOD_MASK_SHIFT) != 0;
    input.time = event.time;
    if (!state) return input;
    xkb_state_update_mask(state.get(), event.state & ModifierBits, 0, 0, 0, 0, event.state >> LayoutShift & LayoutBits);
    const xkb_keysym_t symbol = xkb_state_key_get_one_sym(state.get(), event.detail);
    const bool isControl = (event.state & XCB_MOD_MASK_CONTROL) != 0;
    const bool isOther = (event.state & (XCB_MOD_MASK_1 | XCB_MOD_MASK_4)) != 0; // Alt, and the system key
    if (isControl && !isOther && !input.shift && xkb_keysym_to_lower(symbol) == XKB_KEY_z) input.key = EditorKey::Undo;
    if (isControl || isOther) return input; // the key belongs to the host
    for (const auto& [named, key] : NamedKeys) {
        if (named != symbol) continue;
        input.key = key;
        return input;
    }
    std::array<char, 16> text{};
    const int length = xkb_state_key_get_utf8(state.get(), event.detail, text.data(), text.size());
    if (length <= 0 || static_cast<unsigned char>(text[0]) < ' ' || text[0] == '\x7F') return input;
    input.key = EditorKey::Text;
    input.text.assign(text.data());
    return input;
}

} // namespace eq
