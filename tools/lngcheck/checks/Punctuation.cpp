#include "tools/lngcheck/Letters.h"
#include "tools/lngcheck/checks/TextChecks.h"

#include <algorithm>

namespace eq {

namespace lngcheck {
namespace {

/// An opening and a closing mark.
struct Pair {
    wchar_t open;
    wchar_t close;
};
constexpr std::array Brackets = {Pair{L'(', L')'},     Pair{L'[', L']'},     Pair{L'{', L'}'},
                                 Pair{0xFF08, 0xFF09}, Pair{0xFF3B, 0xFF3D}, Pair{0xFF5B, 0xFF5D},
                                 Pair{0x300C, 0x300D}, Pair{0x300E, 0x300F}, Pair{0x3010, 0x3011}};
/// Quotation marks, one kind per element. A mark may open in one language and close in another, so the check only
/// counts the marks.
constexpr std::array<std::wstring_view, 4> Quotes = {L"\"", L"\x201C\x201D\x201E\x201F", L"\xAB\xBB", L"\x2039\x203A"};

/// Returns true for Hebrew, Arabic and Persian, where arrows may point the other way.
constexpr bool isWrittenToTheLeft(WORD language) {
    return PRIMARYLANGID(language) == 0x0D || PRIMARYLANGID(language) == 0x01 || PRIMARYLANGID(language) == 0x29;
}

bool isMark(wchar_t c) {
    return c > 0x20 && c < 0x7F && scriptOf(c) == Script::None && (c < L'0' || c > L'9') && c != L'&';
}

/// Returns the marks at the start of a text. With reverse iterators, returns the marks at the end, in reverse order.
template <typename Iterator>
std::wstring marksAt(Iterator at, Iterator end) {
    std::wstring marks;
    for (; at != end && isMark(halfWidth(*at)); ++at) marks += halfWidth(*at);
    return marks;
}

void warnOfLostMarks(const CheckedText& text, const std::wstring& marks, const char* place) {
    text.warn("the text " + text.quoted() + " lacks the '" + inUtf8(marks) + "' " + place,
              "English is '" + inUtf8(text.english()) + "'. Arrows and other marks must stay.");
}

bool areBalanced(std::wstring_view text, Pair pair) {
    int depth = 0;
    for (const wchar_t c : text) {
        if (c == pair.open) ++depth;
        if (c == pair.close && --depth < 0) return false;
    }
    return depth == 0;
}

} // namespace

void checkBlanks(const CheckedText& text) {
    const std::wstring& whole = text.text();
    if (whole.empty()) return;
    const char* const hint = "It shows as a gap. Delete the blank, or its escape \\x20.";
    if (isBlank(whole.front())) text.warn("the text " + text.quoted() + " begins with a blank", hint);
    if (isBlank(whole.back())) text.warn("the text " + text.quoted() + " ends with a blank", hint);
    const auto areBlanks = [](wchar_t a, wchar_t b) { return isBlank(a) && isBlank(b); };
    if (std::ranges::adjacent_find(whole, areBlanks) != whole.end())
        text.warn("the text " + text.quoted() + " has two blanks together", "Write one blank.");
}

void checkLostMarks(const CheckedText& text) {
    const std::wstring& own = text.text();
    const std::wstring& english = text.english();
    if (!isButton(text.key()) || own.empty()) return;
    const std::wstring first = marksAt(english.begin(), english.end());
    const std::wstring last = marksAt(english.rbegin(), english.rend());
    if (isWrittenToTheLeft(text.language())) {
        for (const std::wstring& marks : {first, last}) {
            if (own.find_first_of(L"<>") == std::wstring::npos && !marks.empty())
                warnOfLostMarks(text, marks, "of the English text");
        }
        return;
    }
    if (!marksAt(own.begin(), own.end()).starts_with(first)) warnOfLostMarks(text, first, "at its start");
    if (!marksAt(own.rbegin(), own.rend()).starts_with(last)) warnOfLostMarks(text, last, "at its end");
}

void checkPairs(const CheckedText& text) {
    for (const Pair& pair : Brackets) {
        if (!areBalanced(text.text(), pair))
            text.warn("'" + inUtf8(std::wstring(1, pair.open)) + "' and '" + inUtf8(std::wstring(1, pair.close)) +
                          "' are not a pair in " + text.quoted(),
                      "Each opening mark needs a closing one after it.");
    }
    for (const std::wstring_view marks : Quotes) {
        const auto isQuote = [marks](wchar_t c) { return marks.find(c) != std::wstring_view::npos; };
        if (std::ranges::count_if(text.text(), isQuote) % 2 != 0)
            text.warn("a quotation mark has no partner in " + text.quoted(), "Quotation marks come in pairs.");
    }
}

} // namespace lngcheck

} // namespace eq
