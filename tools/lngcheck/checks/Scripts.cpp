#include "tools/lngcheck/Letters.h"
#include "tools/lngcheck/checks/TextChecks.h"

namespace eq {

namespace lngcheck {
namespace {

const char* nameOf(Script script) {
    switch (script) {
    case Script::Greek:
        return "Greek";
    case Script::Cyrillic:
        return "Cyrillic";
    default:
        return "Latin";
    }
}

} // namespace

void checkScripts(const CheckedText& text) {
    Script inWord = Script::None;
    for (const wchar_t c : text.text()) {
        if (c == L'&') continue; // the '&' of a mnemonic may be inside a word
        const Script script = scriptOf(c);
        // Chinese, Japanese and Korean words often have Latin letters beside them.
        const bool isAlphabet = script != Script::None && script != Script::Other;
        if (isAlphabet && inWord != Script::None && script != inWord) {
            text.warn("the letter '" + inUtf8(std::wstring(1, c)) + "' is " + nameOf(script) + ", in a word of " +
                          nameOf(inWord) + " letters: " + text.quoted(),
                      "Letters that look alike can be of different alphabets. Type the word anew with one keyboard "
                      "layout.");
            return;
        }
        inWord = isAlphabet ? script : Script::None;
    }
}

} // namespace lngcheck

} // namespace eq
