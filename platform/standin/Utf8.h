#pragma once

#include <array>
#include <string_view>

namespace eq::standin {

/// A character read from bytes, as UTF-16.
struct DecodedCharacter {
    std::array<char16_t, 2> units;
    int unitCount;
    int size;   // bytes taken
    bool valid; // else the units stand for what could not be read
};

/// Reads the character at the front of a text that is not empty. A broken sequence becomes one U+FFFD, up to the byte
/// that breaks it; a first continuation byte of a wrong range still belongs to it.
DecodedCharacter decodeUtf8(std::string_view text) noexcept;

/// A character as UTF-8.
struct EncodedCharacter {
    std::array<char, 4> bytes;
    int byteCount;
    int unitCount; // UTF-16 units taken
    bool valid;    // else the bytes stand for a surrogate alone
};

/// Writes the character at the front of a UTF-16 text that is not empty.
EncodedCharacter encodeUtf8(std::wstring_view text) noexcept;

} // namespace eq::standin
