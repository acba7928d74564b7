#pragma once

#include "tools/lngcheck/Findings.h"
#include "tools/lngcheck/KnownTexts.h"
#include "tools/lngcheck/LanguageSet.h"
#include "tools/lngcheck/ShippedTexts.h"

#include <array>
#include <string>
#include <string_view>

namespace eq {

/// Checks of translated texts. Each check adds its findings. The findings are warnings, unless the comment says that
/// they are faults.
namespace lngcheck {

/// A text that the library shows, together with the English text.
class CheckedText {
public:
    /// The definition must have a text. All arguments must outlive the object.
    CheckedText(const LanguageFile& file, const Definition& definition, const KnownText& known,
                const EnglishText& english, Findings& findings)
        : m_file(file), m_definition(definition), m_known(known), m_english(english), m_findings(findings) {}

    [[nodiscard]] std::string_view key() const { return m_known.key; }
    [[nodiscard]] const KnownText& known() const { return m_known; }
    [[nodiscard]] WORD language() const { return m_file.language; }
    [[nodiscard]] const Definition& definition() const { return m_definition; }
    [[nodiscard]] const std::wstring& text() const { return *m_definition.text; }
    [[nodiscard]] const std::wstring& english() const { return m_english.text; }

    /// Returns the text in quotation marks, for messages. A long text is cut off.
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

/// Finds a '&' that is lost, repeated, doubled to "&&" or before a blank. Also finds a mnemonic without a key on the
/// keyboard of the language.
void checkMnemonic(const CheckedText& text);

/// Finds two buttons of a property sheet or wizard with the same mnemonic.
void checkMnemonicsOfSheets(const Language& language, Findings& findings);

// Numbers.cpp

/// Finds a number or sign that differs from the English text.
void checkNumbers(const CheckedText& text);

/// Finds a label of a scale whose unit differs from the unit word of the language.
void checkUnitsOfLabels(const Language& language, Findings& findings);

// Scripts.cpp

/// Finds letters of two alphabets in one word, such as a Latin B in a Cyrillic word.
void checkScripts(const CheckedText& text);

// Duplicates.cpp

/// Finds equal texts for two bands, rows, units or buttons of a window.
void checkEqualTexts(const Language& language, Findings& findings);

/// Finds an English text that all shipped languages translate.
void checkUntranslated(const CheckedText& text);

// Punctuation.cpp

/// Finds blanks at the ends of a text, and several blanks together.
void checkBlanks(const CheckedText& text);

/// Finds arrows and other marks at the ends of the English text that the translation lacks.
void checkLostMarks(const CheckedText& text);

/// Finds brackets, braces and quotation marks without a partner.
void checkPairs(const CheckedText& text);

// Space.cpp

/// Finds a text that is empty, has several lines or is wider than its place, and a unit that does not fit into the
/// read-out. An empty text and a unit that is too long are faults.
void checkSpace(const CheckedText& text);

/// The buttons that a window shows together.
inline constexpr std::array<std::string_view, 4> PropertySheetButtons = {"MSGBOX_OK", "MSGBOX_CANCEL",
                                                                         "PRSHT_APPLY_NOW", "MSGBOX_HELP"};
inline constexpr std::array<std::string_view, 5> WizardButtons = {"PRSHT_WIZBACK", "PRSHT_WIZNEXT", "PRSHT_WIZFINISH",
                                                                  "MSGBOX_CANCEL", "MSGBOX_HELP"};

/// Returns whether the text of a key is on a button.
[[nodiscard]] bool isButton(std::string_view key);

} // namespace lngcheck

} // namespace eq
