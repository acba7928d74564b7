#include "tools/lngcheck/Languages.h"
#include "tools/lngcheck/Letters.h"
#include "tools/lngcheck/checks/TextChecks.h"

#include <map>
#include <span>

namespace eq {

namespace lngcheck {
namespace {

/// The '&' characters of a text.
struct Ampersands {
    int marks = 0;       ///< the number of '&' before letters
    int pairs = 0;       ///< the number of "&&", each of which shows one '&'
    bool isBare = false; ///< there is a '&' before a blank or at the end
    wchar_t letter = 0;  ///< the letter after the last mark, in its small form
};

Ampersands ampersandsOf(std::wstring_view text) {
    Ampersands found;
    for (std::size_t i = text.find(L'&'); i < text.size(); i = text.find(L'&', i + 1)) {
        const wchar_t next = i + 1 < text.size() ? text[i + 1] : L' ';
        if (next == L'&') {
            ++found.pairs;
            ++i;
        } else if (isBlank(next)) {
            found.isBare = true;
        } else {
            ++found.marks;
            found.letter = smallLetter(next);
        }
    }
    return found;
}

bool isAsciiLetterOrDigit(wchar_t c) {
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9');
}

void checkLetter(const CheckedText& text, wchar_t letter) {
    if (isAsciiLetterOrDigit(letter)) return;
    if (letter >= 0x80 && scriptOf(letter) != Script::None && isInAlphabet(letter, text.language())) return;
    text.warn("the mnemonic '" + inUtf8(std::wstring(1, letter)) + "' is not a letter on a keyboard of the language " +
                  described(text.language()),
              "The user presses Alt and this letter. Put & before an ASCII letter or a letter of the language's "
              "alphabet; languages without one write (&A) after the text.");
}

void checkSheet(const Language& language, std::span<const std::string_view> buttons, Findings& findings) {
    std::map<wchar_t, Place> used;
    for (const std::string_view key : buttons) {
        const Place place = language.findShown(key);
        if (!place || !place.definition->text) continue;
        const Ampersands ampersands = ampersandsOf(*place.definition->text);
        if (ampersands.marks == 0) continue;
        const auto [other, isNew] = used.try_emplace(ampersands.letter, place);
        if (isNew) continue;
        findings.add(place.file->path, place.definition->line, Severity::Warning,
                     "the mnemonic '" + inUtf8(std::wstring(1, ampersands.letter)) + "' of " + place.definition->key +
                         " is also that of " + other->second.definition->key + " in " + lineOf(other->second, place) +
                         ", a button of the same window",
                     "Put & before another letter of one of the two texts.");
    }
}

} // namespace

void checkMnemonic(const CheckedText& text) {
    const Ampersands own = ampersandsOf(text.text());
    const Ampersands english = ampersandsOf(text.english());
    const std::string original = "English is '" + inUtf8(text.english()) + "'.";
    if (own.pairs > english.pairs && isButton(text.key())) {
        text.warn("'&&' shows one '&', and underlines no letter", "Write a single &. " + original);
        return;
    }
    if (own.isBare) {
        text.warn("a '&' before a blank or at the end is not shown", "Write && to show a &.");
        return;
    }
    if (english.marks > 0 && own.marks == 0)
        text.warn("the mnemonic is lost: no letter has a '&' before it",
                  "The keyboard cannot reach this button. " + original);
    if (own.marks > 0 && !isButton(text.key()))
        text.warn("the '&' is not shown: it underlines the next letter", "Write && to show a &.");
    if (own.marks > 1) text.warn("two letters have a '&' before them", "Only the last one counts. " + original);
    if (own.marks > 0 && isButton(text.key())) checkLetter(text, own.letter);
}

void checkMnemonicsOfSheets(const Language& language, Findings& findings) {
    checkSheet(language, PropertySheetButtons, findings);
    checkSheet(language, WizardButtons, findings);
}

} // namespace lngcheck

} // namespace eq
