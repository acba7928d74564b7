#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace eq {

/// Writes numbers, texts and bytes, one after the other. A text consists of 16-bit units.
class BinaryWriter {
public:
    BinaryWriter() noexcept = default;
    explicit BinaryWriter(std::endian byteOrder) noexcept : order(byteOrder) {}

    /// Returns the bytes so far. The view is valid until the next call.
    [[nodiscard]] std::string_view written() const noexcept { return bytes; }
    [[nodiscard]] std::size_t offset() const noexcept { return bytes.size(); }

    void writeBytes(std::string_view content) { bytes += content; }

    template <std::unsigned_integral Number>
    void write(Number number) {
        bytes.resize(bytes.size() + sizeof number);
        patch(bytes.size() - sizeof number, number);
    }

    /// Writes a text without a terminator.
    void writeText(std::wstring_view text) {
        for (const wchar_t unit : text) write(static_cast<std::uint16_t>(unit));
    }

    /// Writes zeros to the next multiple of `alignment` bytes from the start.
    void align(std::size_t alignment) {
        while (bytes.size() % alignment != 0) bytes.push_back('\0');
    }

    /// Replaces the number that was written at `position`.
    template <std::unsigned_integral Number>
    void patch(std::size_t position, Number number) {
        for (std::size_t i = 0; i < sizeof number; ++i) {
            const std::size_t byte = order == std::endian::big ? sizeof number - 1 - i : i;
            bytes.at(position + i) = static_cast<char>(number >> (8U * byte) & 0xFFU);
        }
    }

private:
    std::string bytes;
    std::endian order = std::endian::little;
};

} // namespace eq
