#include "tools/lngcheck/Letters.h"

#include "support/AsciiText.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace eq {

namespace lngcheck {
namespace {

constexpr bool isIn(wchar_t c, wchar_t first, wchar_t last) noexcept {
    return c >= first && c <= last;
}

} // namespace

Script scriptOf(wchar_t c) noexcept {
    if (isIn(c, L'A', L'Z') || isIn(c, L'a', L'z')) return Script::Latin;
    // The signs for multiplication and division are not letters.
    if (isIn(c, 0xC0, 0x24F) && c != 0xD7 && c != 0xF7) return Script::Latin;
    if (isIn(c, 0x1E00, 0x1EFF)) return Script::Latin;
    if (isIn(c, 0x386, 0x3FF) && c != 0x387) return Script::Greek;
    if (isIn(c, 0x400, 0x52F) && !isIn(c, 0x482, 0x489)) return Script::Cyrillic;
    return c >= 0x590 && !isIn(c, 0x2000, 0x2BFF) && !isIn(c, 0x3000, 0x3004) && c < 0xFE00 ? Script::Other
                                                                                            : Script::None;
}

bool isBlank(wchar_t c) noexcept {
    return c == L' ' || c == L'\t' || c == 0xA0 || isIn(c, 0x2000, 0x200A) || c == 0x202F || c == 0x3000;
}

wchar_t smallLetter(wchar_t c) noexcept {
    const auto shifted = [c](int distance) { return static_cast<wchar_t>(c + distance); };
    if (isIn(c, L'A', L'Z')) return shifted(0x20);
    if (isIn(c, 0xC0, 0xDE) && c != 0xD7) return shifted(0x20);
    if (c == 0x130) return L'i'; // I with a dot
    if (c == 0x178) return 0xFF; // Y with two dots
    // In Latin Extended-A each capital letter is directly before its small letter. The codes of capitals are even in
    // the first two ranges, and odd in the next two.
    if (isIn(c, 0x100, 0x137) || isIn(c, 0x14A, 0x177)) return static_cast<wchar_t>(c | 1);
    if (isIn(c, 0x139, 0x148) || isIn(c, 0x179, 0x17E)) return c % 2 == 1 ? shifted(1) : c;
    if (c == 0x1A0 || c == 0x1AF) return shifted(1); // O and U with a horn
    if (isIn(c, 0x391, 0x3AB)) return shifted(0x20);
    if (isIn(c, 0x410, 0x42F)) return shifted(0x20);
    if (isIn(c, 0x400, 0x40F)) return shifted(0x50);
    if (c == 0x490) return 0x491;
    return c;
}

wchar_t halfWidth(wchar_t c) noexcept {
    if (isIn(c, 0xFF01, 0xFF5E)) return static_cast<wchar_t>(c - 0xFEE0);
    return c == 0x2212 ? L'-' : c;
}

std::size_t differences(std::string_view a, std::string_view b) {
    constexpr std::size_t Longest = 64;
    if (std::max(a.size(), b.size()) > Longest) return std::max(a.size(), b.size());
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t changed = diagonal + (asciiUpper(a[i]) == asciiUpper(b[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

} // namespace lngcheck

} // namespace eq
