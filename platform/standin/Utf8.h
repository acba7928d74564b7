#pragma once

#include <array>
#include <string_view>

namespace eq::standin {

/// A decoded character, in UTF-16.
struct DecodedCharacter {
    std::array<char16_t, 2> units;
    int unitCount;
    int size;   // bytes read
    bool valid; // false: the units replace unreadable bytes
};

/// Decodes the first character of a text, which must not be empty. A broken sequence becomes one U+FFFD. A broken
/// sequence ends before the byte that breaks it. If this byte is the first continuation byte and only its range is
/// wrong, the sequence includes the byte.
DecodedCharacter decodeUtf8(std::string_view text) noexcept;

/// An encoded character, in UTF-8.
struct EncodedCharacter {
    std::array<char, 4> bytes;
    int byteCount;
    int unitCount; // UTF-16 units read
    bool valid;    // false: the bytes replace an unpaired surrogate
};

/// Encodes the first character of a UTF-16 text, which must not be empty.
EncodedCharacter encodeUtf8(std::wstring_view text) noexcept;

} // namespace eq::standin
