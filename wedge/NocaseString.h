#pragma once

#include "support/AsciiText.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace eq {

/// Compares characters without regard to ASCII case. Bytes of 0x80 and above equal only themselves. They sort before
/// all other bytes, because bytes are compared as signed values.
struct nocase_char_traits : std::char_traits<char> {
    static constexpr bool eq(char a, char b) noexcept { return asciiUpper(a) == asciiUpper(b); }

    static constexpr bool lt(char a, char b) noexcept {
        return static_cast<signed char>(asciiUpper(a)) < static_cast<signed char>(asciiUpper(b));
    }

    static constexpr int compare(const char* a, const char* b, std::size_t length) noexcept {
        for (std::size_t i = 0; i < length; ++i) {
            if (lt(a[i], b[i])) return -1;
            if (lt(b[i], a[i])) return 1;
        }
        return 0;
    }

    static constexpr const char* find(const char* text, std::size_t length, const char& wanted) noexcept {
        for (std::size_t i = 0; i < length; ++i) {
            if (eq(text[i], wanted)) return text + i;
        }
        return nullptr;
    }
};

/// The key type of the language tables: "IDS_DB" and "ids_db" are the same key.
using nocase_string = std::basic_string<char, nocase_char_traits>;
using nocase_string_view = std::basic_string_view<char, nocase_char_traits>;

inline nocase_string_view asNocase(std::string_view text) noexcept {
    return {text.data(), text.size()};
}

} // namespace eq
