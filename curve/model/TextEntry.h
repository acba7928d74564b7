#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace eq {

/// A read-out that the user edits: its text in UTF-8, the cursor, and the selection. The selection is the whole text,
/// as at the beginning, or nothing. A typed character replaces a selected text.
struct TextEntry {
    static constexpr std::size_t Most = 32; ///< bytes

    int parameter = 0;
    std::string text;
    std::size_t cursor = 0; ///< a byte of `text`, at the boundary of a character
    bool isSelected = true;
    bool isInvalid = false; ///< the text was entered, but is not a valid value

    TextEntry(int parameterIndex, std::string shown)
        : parameter(parameterIndex), text(std::move(shown)), cursor(text.size()) {}

    void insert(std::string_view typed);
    void eraseBefore();
    void eraseAfter();
    void moveLeft();
    void moveRight();
    void moveTo(std::size_t byte);

    friend bool operator==(const TextEntry&, const TextEntry&) = default;

private:
    void eraseSelection();
    [[nodiscard]] std::size_t previous() const noexcept;
    [[nodiscard]] std::size_t next() const noexcept;
};

} // namespace eq
