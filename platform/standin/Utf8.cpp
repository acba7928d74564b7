#include "platform/standin/Utf8.h"

#include <cstdint>

namespace {

constexpr char16_t ReplacementCharacter = 0xFFFD;

/// The lead byte of a sequence determines these properties: the number of continuation bytes, and the range of the
/// first continuation byte. The range is narrower if a full range would include overlong forms, surrogates or numbers
/// above U+10FFFF.
struct Lead {
    int continuations;
    std::uint8_t firstLowest;
    std::uint8_t firstHighest;
};

Lead classify(std::uint8_t byte) noexcept {
    if (byte < 0x80) return {0, 0, 0};
    if (byte >= 0xC2 && byte <= 0xDF) return {1, 0x80, 0xBF};
    if (byte == 0xE0) return {2, 0xA0, 0xBF};
    if (byte == 0xED) return {2, 0x80, 0x9F};
    if (byte >= 0xE1 && byte <= 0xEF) return {2, 0x80, 0xBF};
    if (byte == 0xF0) return {3, 0x90, 0xBF};
    if (byte >= 0xF1 && byte <= 0xF3) return {3, 0x80, 0xBF};
    if (byte == 0xF4) return {3, 0x80, 0x8F};
    return {-1, 0, 0};
}

eq::standin::DecodedCharacter broken(int size) noexcept {
    return {{ReplacementCharacter}, 1, size, false};
}

constexpr bool isHighSurrogate(std::uint32_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool isLowSurrogate(std::uint32_t unit) noexcept {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// Returns the continuation byte with the six bits of a code point from bit `shift` on.
constexpr char continuation(std::uint32_t point, int shift) noexcept {
    return static_cast<char>(0x80 | (point >> shift & 0x3F));
}

eq::standin::EncodedCharacter encodePoint(std::uint32_t point, int unitCount, bool valid) noexcept {
    if (point < 0x80) return {{static_cast<char>(point)}, 1, unitCount, valid};
    if (point < 0x800) return {{static_cast<char>(0xC0 | point >> 6), continuation(point, 0)}, 2, unitCount, valid};
    if (point < 0x10000)
        return {{static_cast<char>(0xE0 | point >> 12), continuation(point, 6), continuation(point, 0)},
                3,
                unitCount,
                valid};
    return {{static_cast<char>(0xF0 | point >> 18), continuation(point, 12), continuation(point, 6),
             continuation(point, 0)},
            4,
            unitCount,
            valid};
}

} // namespace

namespace eq::standin {

DecodedCharacter decodeUtf8(std::string_view text) noexcept {
    const auto byteAt = [text](int index) { return static_cast<std::uint8_t>(text[static_cast<std::size_t>(index)]); };
    const std::uint8_t first = byteAt(0);
    const auto [continuations, lowest, highest] = classify(first);
    if (continuations < 0) return broken(1);
    if (continuations == 0) return {{first}, 1, 1, true};

    std::uint32_t point = first & (0x3FU >> continuations);
    for (int i = 1; i <= continuations; ++i) {
        const bool continues = static_cast<std::size_t>(i) < text.size() && (byteAt(i) & 0xC0) == 0x80;
        if (!continues) return broken(i);
        if (i == 1 && (byteAt(i) < lowest || byteAt(i) > highest)) return broken(2);
        point = point << 6 | (byteAt(i) & 0x3FU);
    }
    const int size = continuations + 1;
    if (point < 0x10000) return {{static_cast<char16_t>(point)}, 1, size, true};
    const std::uint32_t offset = point - 0x10000;
    return {{static_cast<char16_t>(0xD800 | offset >> 10), static_cast<char16_t>(0xDC00 | (offset & 0x3FF))},
            2,
            size,
            true};
}

EncodedCharacter encodeUtf8(std::wstring_view text) noexcept {
    const auto first = static_cast<char16_t>(text[0]);
    const auto second = static_cast<char16_t>(text.size() > 1 ? text[1] : 0);
    if (isHighSurrogate(first) && isLowSurrogate(second))
        return encodePoint(0x10000U + ((first & 0x3FFU) << 10 | (second & 0x3FFU)), 2, true);
    const bool alone = isHighSurrogate(first) || isLowSurrogate(first);
    return encodePoint(alone ? ReplacementCharacter : first, 1, !alone);
}

} // namespace eq::standin
