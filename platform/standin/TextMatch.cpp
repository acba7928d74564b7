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

namespace standin {

bool equalNoCase(std::string_view a, std::string_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), equalLetters);
}

bool fitsPattern(std::string_view name, std::string_view pattern) noexcept {
    // On a mismatch the last '*' takes one byte more: no earlier one can help, so this never runs exponentially.
    std::size_t n = 0;
    std::size_t p = 0;
    std::size_t starName = 0;
    std::size_t starPattern = std::string_view::npos;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            starPattern = p++;
            starName = n;
        } else if (p < pattern.size() && (pattern[p] == '?' || equalLetters(pattern[p], name[n]))) {
            ++p;
            ++n;
        } else if (starPattern != std::string_view::npos) {
            p = starPattern + 1;
            n = ++starName;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

} // namespace standin
