#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

// Text functions that return the same result in every locale. A returned view is a part of the argument's text.

namespace eq {

constexpr bool isAscii(char c) noexcept {
    return static_cast<unsigned char>(c) < 0x80;
}

/// Returns the upper-case form of an ASCII letter, and any other character unchanged.
template <typename Character>
constexpr Character asciiUpper(Character c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<Character>(c - 'a' + 'A') : c;
}

/// Returns whether two texts are equal, without regard to ASCII case.
constexpr bool equalNoCase(std::string_view a, std::string_view b) noexcept {
    return std::ranges::equal(a, b, {}, asciiUpper<char>, asciiUpper<char>);
}
constexpr bool equalNoCase(std::wstring_view a, std::wstring_view b) noexcept {
    return std::ranges::equal(a, b, {}, asciiUpper<wchar_t>, asciiUpper<wchar_t>);
}

/// Returns the text without the bytes at both ends for which `isRemoved` is true.
template <typename Predicate>
constexpr std::string_view trimIf(std::string_view s, Predicate isRemoved) noexcept {
    while (!s.empty() && isRemoved(s.front())) s.remove_prefix(1);
    while (!s.empty() && isRemoved(s.back())) s.remove_suffix(1);
    return s;
}

/// Returns the text without the blanks and control characters (bytes up to 0x20) at both ends.
constexpr std::string_view trim(std::string_view s) noexcept {
    return trimIf(s, [](char c) { return static_cast<unsigned char>(c) <= 0x20; });
}

/// Returns the text without the bytes of `chars` at both ends.
constexpr std::string_view trim_chars(std::string_view s, std::string_view chars) noexcept {
    return trimIf(s, [chars](char c) { return chars.find(c) != chars.npos; });
}

/// Calls `visit` with each piece between the delimiters. There is at least one piece, and a piece can be empty.
template <typename Visit>
constexpr void forEachPiece(std::string_view s, std::string_view delimiters, Visit visit) {
    for (auto end = s.find_first_of(delimiters); end != s.npos; end = s.find_first_of(delimiters)) {
        visit(s.substr(0, end));
        s.remove_prefix(end + 1);
    }
    visit(s);
}

/// Appends the pieces that are not empty to `out`.
inline void split(std::string_view s, std::string_view delimiters, std::vector<std::string>& out) {
    forEachPiece(s, delimiters, [&out](std::string_view piece) {
        if (!piece.empty()) out.emplace_back(piece);
    });
}

} // namespace eq
