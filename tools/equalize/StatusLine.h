#pragma once

#include <string>

namespace eq {

/// Standard error, for all threads: messages, and below them one line that is replaced again and again. Control
/// characters of messages are made visible. No escape sequences are used, so that every terminal will do.
class StatusLine {
public:
    /// Writes "equalize: `text`", above the line.
    static void message(const std::string& text);

    /// Replaces the line. `text` must be shorter than `columns()`, and empty removes the line.
    static void show(const std::string& text);

    [[nodiscard]] static bool isTerminal();
    /// The width of the terminal.
    [[nodiscard]] static int columns();
};

} // namespace eq
