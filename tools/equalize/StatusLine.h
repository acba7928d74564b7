#pragma once

#include <string>

namespace eq {

/// Writes messages to standard error, and keeps one status line below them. All threads may use this class. Control
/// characters in messages become visible. The output has no escape sequences, so that it works on every terminal.
class StatusLine {
public:
    /// Writes "equalize: `text`" above the status line.
    static void message(const std::string& text);

    /// Replaces the status line. `text` must be shorter than `columns()`. An empty text removes the line.
    static void show(const std::string& text);

    [[nodiscard]] static bool isTerminal();
    /// Returns the width of the terminal in characters; 80 if the width is unknown.
    [[nodiscard]] static int columns();
};

} // namespace eq
