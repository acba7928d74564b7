#include "platform/standin/TextMatch.h"

#include <algorithm>

namespace {

constexpr char upperCase(char c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

constexpr bool equalLetters(char a, char b) noexcept {
    return upperCase(a) == upperCase(b);
}

} // namespace

namespace eq::standin {

bool equalNoCase(std::string_view a, std::string_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), equalLetters);
}

bool endsNoCase(std::string_view text, std::string_view end) noexcept {
    return text.size() >= end.size() && equalNoCase(text.substr(text.size() - end.size()), end);
}

} // namespace eq::standin
