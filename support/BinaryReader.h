#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace eq {

/// Thrown by a read that needs more bytes than remain.
class EndOfData : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "the data ends early"; }
};

/// Reads numbers, texts and bytes from binary data, one after the other. A read beyond the end throws EndOfData.
///
/// The caller owns the data. A text consists of 16-bit units; each wide character holds one.
class BinaryReader {
public:
    BinaryReader(const void* data, std::size_t size, std::endian byteOrder = std::endian::little) noexcept
        : bytes(static_cast<const char*>(data), size), order(byteOrder) {}

    [[nodiscard]] std::size_t offset() const noexcept { return position; }
    [[nodiscard]] std::size_t remaining() const noexcept { return bytes.size() - position; }

    [[nodiscard]] std::string_view readBytes(std::size_t count) {
        if (count > remaining()) throw EndOfData();
        position += count;
        return bytes.substr(position - count, count);
    }

    template <std::unsigned_integral Number>
    [[nodiscard]] Number read() {
        const std::string_view digits = readBytes(sizeof(Number));
        Number value = 0;
        for (std::size_t i = 0; i < digits.size(); ++i) {
            const char digit = digits[order == std::endian::big ? i : digits.size() - 1 - i];
            value = static_cast<Number>(value << 8U | static_cast<unsigned char>(digit));
        }
        return value;
    }

    /// Returns the next number and keeps the position.
    template <std::unsigned_integral Number>
    [[nodiscard]] Number peek() const {
        return BinaryReader(*this).read<Number>();
    }

    /// Reads a text and its terminator.
    [[nodiscard]] std::wstring readText() {
        std::wstring text;
        while (const auto unit = read<std::uint16_t>()) text.push_back(static_cast<wchar_t>(unit));
        return text;
    }

    /// Reads a text of `count` units without a terminator.
    [[nodiscard]] std::wstring readText(std::size_t count) {
        std::wstring text;
        for (; count > 0; --count) text.push_back(static_cast<wchar_t>(read<std::uint16_t>()));
        return text;
    }

    void skip(std::size_t count) { static_cast<void>(readBytes(count)); }

    /// Skips to the next multiple of `alignment` bytes from the start.
    void align(std::size_t alignment) { skip((alignment - position % alignment) % alignment); }

private:
    std::string_view bytes;
    std::size_t position = 0;
    std::endian order;
};

} // namespace eq
