#include "tools/lngcheck/TextWidth.h"

#include <algorithm>
#include <array>

namespace eq {

namespace lngcheck {
namespace {

/// The widths of the characters 0x20 to 0x7E in pixels, one digit per character. A is 10.
constexpr std::string_view AsciiWidths = "33466A7234463433" // blank to /
                                         "6666666666336666" // 0 to ?
                                         "A778877983576989" // @ to O
                                         "7987787A77733366" // P to _
                                         "4666663662252866" // ` to o
                                         "664536686654346"; // p to ~
static_assert(AsciiWidths.size() == 0x7F - 0x20);

struct Range {
    wchar_t first;
    wchar_t last;
    int width;
};

constexpr std::array Ranges = {
    Range{0x00C0, 0x00DE, 8},  // Latin capitals with accents
    Range{0x00DF, 0x00FF, 6},  // Latin small letters with accents
    Range{0x0370, 0x03AB, 7},  // Greek capitals
    Range{0x03AC, 0x03FF, 6},  // Greek small letters
    Range{0x0400, 0x042F, 7},  // Cyrillic capitals
    Range{0x0430, 0x045F, 6},  // Cyrillic small letters
    Range{0x0590, 0x07FF, 6},  // Hebrew, Arabic
    Range{0x0E00, 0x0E7F, 6},  // Thai
    Range{0x1100, 0x11FF, 12}, // Korean
    Range{0x2E80, 0xD7A3, 12}, // Chinese, Japanese, Korean: two cells
    Range{0xD800, 0xDFFF, 6},  // one half of a surrogate pair
    Range{0xF900, 0xFAFF, 12}, // Chinese, in compatibility forms
    Range{0xFF00, 0xFF60, 12}, // full-width forms
    Range{0xFF61, 0xFFDC, 6},  // half-width forms
};
constexpr int OtherWidth = 7;

/// Cyrillic letters that are wider than others, such as those with three stems.
constexpr std::wstring_view WideCapitals = L"\x416\x41C\x424\x428\x429\x42B\x42E";
constexpr std::wstring_view WideSmallLetters = L"\x436\x43C\x444\x448\x449\x44B\x44E";
constexpr int WideCapitalWidth = 10;
constexpr int WideSmallWidth = 8;

constexpr int asciiWidth(wchar_t c) noexcept {
    const char width = AsciiWidths[static_cast<std::size_t>(c - 0x20)];
    return width == 'A' ? 10 : width - '0';
}

int characterWidth(wchar_t c) noexcept {
    if (c < 0x20) return 0;
    if (c < 0x7F) return asciiWidth(c);
    if (WideCapitals.find(c) != std::wstring_view::npos) return WideCapitalWidth;
    if (WideSmallLetters.find(c) != std::wstring_view::npos) return WideSmallWidth;
    const auto range = std::ranges::find_if(Ranges, [c](const Range& r) { return c >= r.first && c <= r.last; });
    return range == Ranges.end() ? OtherWidth : range->width;
}

} // namespace

int textWidth(std::wstring_view text) noexcept {
    int width = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == L'&' && ++i == text.size()) break;
        width += characterWidth(text[i]);
    }
    // The gap after the last letter may be cut off.
    return std::max(width - 1, 0);
}

int controlWidth(int dialogUnits) noexcept {
    constexpr int HorizontalBaseUnit = 6;
    return dialogUnits * HorizontalBaseUnit / 4;
}

} // namespace lngcheck

} // namespace eq
