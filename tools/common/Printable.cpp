#include "tools/common/Printable.h"

#include <algorithm>
#include <cstddef>

namespace eq {
namespace {

bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// Returns the number of bytes of the character at the start of `text`. Returns 0 for a control character and for bytes
/// that are not UTF-8. Overlong forms and surrogates count as characters, because a terminal does not interpret them as
/// control characters.
std::size_t characterLength(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x80) return first >= 0x20 && first != 0x7F ? 1 : 0;
    const std::size_t length = first >= 0xF5 ? 0 : first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC2 ? 2 : 0;
    if (length == 0 || text.size() < length) return 0;
    if (!std::ranges::all_of(text.substr(1, length - 1), isContinuation)) return 0;
    // U+0080 to U+009F are also control characters.
    const bool isControl = first == 0xC2 && static_cast<unsigned char>(text[1]) < 0xA0;
    return isControl ? 0 : length;
}

} // namespace

std::string printable(std::string_view text) {
    constexpr std::string_view Digits = "0123456789ABCDEF";
    std::string result;
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        if (length == 0) {
            const auto byte = static_cast<unsigned char>(text.front());
            result += {'\\', 'x', Digits[byte / 16], Digits[byte % 16]};
        } else {
            result += text.substr(0, length);
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return result;
}

std::string jsonString(std::string_view text) {
    std::string result = "\"";
    for (const char c : printable(text)) {
        if (c == '"' || c == '\\') result += '\\';
        result += c;
    }
    return result + "\"";
}

} // namespace eq
