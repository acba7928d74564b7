#pragma once

#include <cstdint>
#include <string>

namespace eq {

/// The state of the pointer at an event. Times are in milliseconds.
struct PointerInput {
    int x = 0;
    int y = 0;
    bool shift = false;
    bool alt = false;
    std::uint32_t time = 0;
};

enum class EditorKey {
    Other, ///< any key that is not in this list
    Text,  ///< a key that types `KeyInput::text`
    Tab,
    Left,
    Right,
    Up,
    Down,
    PageUp,
    PageDown,
    Home,
    End,
    Delete,
    Backspace,
    Enter,
    Escape,
    Undo,
};

struct KeyInput {
    EditorKey key = EditorKey::Other;
    bool shift = false;
    std::uint32_t time = 0;
    std::string text; ///< in UTF-8
};

} // namespace eq
