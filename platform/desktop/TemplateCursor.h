#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace eq::standin {

/// Reads a compiled template. Win32 functions receive templates without a size, so only the template's structure shows
/// where it ends.
class TemplateCursor {
public:
    explicit TemplateCursor(const void* start) noexcept : m_start(static_cast<const std::byte*>(start)) {}

    [[nodiscard]] std::uint16_t takeWord() noexcept { return take<std::uint16_t>(); }
    [[nodiscard]] std::uint32_t takeDoubleWord() noexcept { return take<std::uint32_t>(); }
    [[nodiscard]] std::uint16_t peekWord() const noexcept { return TemplateCursor(*this).takeWord(); }

    /// Reads a text and its terminator. Returns the text.
    [[nodiscard]] std::wstring takeText() {
        std::wstring text;
        for (auto unit = takeWord(); unit != 0; unit = takeWord()) text += static_cast<wchar_t>(unit);
        return text;
    }

    [[nodiscard]] const std::byte* here() const noexcept { return m_start + m_offset; }
    void skip(std::size_t count) noexcept { m_offset += count; }
    void alignToDoubleWord() noexcept { m_offset = (m_offset + 3) & ~std::size_t{3}; }

private:
    template <typename Number>
    Number take() noexcept {
        Number number;
        std::memcpy(&number, here(), sizeof number);
        skip(sizeof number);
        return number;
    }

    const std::byte* m_start;
    std::size_t m_offset = 0;
};

} // namespace eq::standin
