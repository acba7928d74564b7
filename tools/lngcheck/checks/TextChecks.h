#pragma once

#include "tools/lngcheck/Findings.h"
#include "tools/lngcheck/KnownTexts.h"
#include "tools/lngcheck/LanguageSet.h"
#include "tools/lngcheck/ShippedTexts.h"

#include <array>
#include <string>
#include <string_view>

namespace eq {

/// The checks of translated texts. Each function adds its findings, all of which are warnings unless stated otherwise.
namespace lngcheck {

/// A text that the library shows, beside its English form.
class CheckedText {
public:
    /// The definition must have a text.
    CheckedText(const LanguageFile& file, const Definition& definition, const KnownText& known,
                const EnglishText& english, Findings& findings)
        : m_file(file), m_definition(definition), m_known(known), m_english(english), m_findings(findings) {}

    [[nodiscard]] std::string_view key() const { return m_known.key; }
    [[nodiscard]] const KnownText& known() const { return m_known; }
    [[nodiscard]] WORD language() const { return m_file.language; }
    [[nodiscard]] const Definition& definition() const { return m_definition; }
    [[nodiscard]] const std::wstring& text() const { return *m_definition.text; }
    [[nodiscard]] const std::wstring& english() const { return m_english.text; }

    /// The text in quotation marks, for messages.
    [[nodiscard]] std::string quoted() const;

    void report(Severity severity, const std::string& text, const std::string& hint = {}) const;
    void warn(const std::string& text, const std::string& hint = {}) const { report(Severity::Warning, text, hint); }

private:
    const LanguageFile& m_file;
    const Definition& m_definition;
    const KnownText& m_known;
    const EnglishText& m_english;
    Findings& m_findings;
};

// Mnemonics.cpp

/// A '&' that is lost, repeated, doubled to "&&" or before a blank, and a letter that the language has no key for.
void checkMnemonic(const CheckedText& text);

/// Two buttons of a property sheet or wizard with one mnemonic.
void checkMnemonicsOfSheets(const Language& language, Findings& findings);

// Numbers.cpp

/// A number, or its sign, that differs from the English one.
void checkNumbers(const CheckedText& text);

/// The unit of a scale's label, which must be the file's own unit word.
void checkUnitsOfLabels(const Language& language, Findings& findings);

// Scripts.cpp

/// Letters of two alphabets in one word, such as a Latin B in a Cyrillic word.
void checkScripts(const CheckedText& text);

// Duplicates.cpp

/// One text for two bands, rows, units or buttons of a sheet.
void checkEqualTexts(const Language& language, Findings& findings);

/// An English text that all shipped languages translate.
void checkUntranslated(const CheckedText& text);

// Punctuation.cpp

/// Blanks at the ends, and several together.
void checkBlanks(const CheckedText& text);

/// Arrows and other marks at the ends of the English text that the translation lacks.
void checkLostMarks(const CheckedText& text);

/// Brackets, braces and quotation marks without their partner.
void checkPairs(const CheckedText& text);

// Space.cpp

/// A text that is empty or in several lines, a unit that does not fit the read-out, a text that is wider than its
/// place. A lost text is a fault.
void checkSpace(const CheckedText& text);

/// The buttons that a window shows together.
inline constexpr std::array<std::string_view, 4> PropertySheetButtons = {"MSGBOX_OK", "MSGBOX_CANCEL",
                                                                         "PRSHT_APPLY_NOW", "MSGBOX_HELP"};
inline constexpr std::array<std::string_view, 5> WizardButtons = {"PRSHT_WIZBACK", "PRSHT_WIZNEXT", "PRSHT_WIZFINISH",
                                                                  "MSGBOX_CANCEL", "MSGBOX_HELP"};

[[nodiscard]] bool isButton(std::string_view key);

} // namespace lngcheck

} // namespace eq
