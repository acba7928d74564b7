#pragma once

#include "wedge/resources/prep_exception.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>

/// Reads little-endian numbers and runs of bytes one behind the other, never past the end: a read that would go beyond
/// throws prep_exception.
class ByteCursor {
public:
    ByteCursor(const void* start, std::size_t size) : m_rest(static_cast<const std::byte*>(start), size) {}

    [[nodiscard]] std::uint16_t readWord() { return readNumber<std::uint16_t>(); }
    [[nodiscard]] std::uint32_t readDoubleWord() { return readNumber<std::uint32_t>(); }

    [[nodiscard]] std::span<const std::byte> readBytes(std::size_t count) {
        if (count > m_rest.size()) throw prep_exception("resource ends early");
        const std::span<const std::byte> bytes = m_rest.first(count);
        m_rest = m_rest.subspan(count);
        return bytes;
    }

    /// A 16-bit count and so many 16-bit units.
    [[nodiscard]] std::wstring readCountedString() {
        std::wstring text(readWord(), L'\0');
        for (wchar_t& unit : text) unit = static_cast<wchar_t>(readWord());
        return text;
    }
    void skipCountedString() { static_cast<void>(readBytes(std::size_t{2} * readWord())); }

private:
    template <typename Number>
    Number readNumber() {
        Number number;
        std::memcpy(&number, readBytes(sizeof number).data(), sizeof number);
        return number;
    }

    std::span<const std::byte> m_rest;
};
