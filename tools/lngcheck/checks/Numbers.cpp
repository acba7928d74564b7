#include "support/AsciiText.h"
#include "tools/lngcheck/Letters.h"
#include "tools/lngcheck/checks/TextChecks.h"

#include <optional>
#include <vector>

namespace eq {

namespace lngcheck {
namespace {

bool isDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

bool isSign(wchar_t c) {
    return c == L'+' || c == L'-';
}

/// The parts of a text: its numbers, each with its sign, and the rest without blanks.
struct Parts {
    std::vector<std::wstring> numbers;
    std::wstring rest;
};

Parts partsOf(std::wstring_view text) {
    Parts parts;
    std::wstring number;
    const auto endNumber = [&] {
        // A sign without digits is not a number.
        if (!number.empty()) (isDigit(number.back()) ? parts.numbers.emplace_back(number) : parts.rest += number);
        number.clear();
    };
    for (const wchar_t original : text) {
        const wchar_t c = halfWidth(original);
        const bool continues = isDigit(c) || (!number.empty() && isDigit(number.back()) && (c == L'.' || c == L','));
        if (!continues) endNumber();
        if (continues || isSign(c))
            number += c;
        else if (!isBlank(c))
            parts.rest += original;
    }
    endNumber();
    return parts;
}

std::string listed(const std::vector<std::wstring>& numbers) {
    std::string list;
    for (const std::wstring& number : numbers) list += (list.empty() ? "" : " ") + inUtf8(number);
    return list.empty() ? "no number" : list;
}

/// Returns the key of the unit word at the end of a scale's English label; nothing for other texts.
std::optional<std::string_view> unitOfLabel(const EnglishText& label) {
    const Parts parts = partsOf(label.text);
    if (parts.numbers.empty()) return std::nullopt;
    for (const KnownText& known : knownTexts()) {
        const EnglishText* const unit = known.number.empty() ? nullptr : findEnglishText(known.key);
        if (unit && unit->text == parts.rest) return known.key;
    }
    return std::nullopt;
}

} // namespace

void checkNumbers(const CheckedText& text) {
    const std::vector<std::wstring> english = partsOf(text.english()).numbers;
    const std::vector<std::wstring> own = partsOf(text.text()).numbers;
    if (own == english) return;
    const EnglishText* const entry = findEnglishText(text.key());
    // The name of a band needs no number.
    if (own.empty() && !(entry && unitOfLabel(*entry))) return;
    text.warn("the text has " + listed(own) + ", and English has " + listed(english),
              "The numbers and signs must be those of the English text, '" + inUtf8(text.english()) + "'.");
}

void checkUnitsOfLabels(const Language& language, Findings& findings) {
    for (const KnownText& known : knownTexts()) {
        const EnglishText* const english = findEnglishText(known.key);
        const auto unitKey = english ? unitOfLabel(*english) : std::nullopt;
        const Place label = language.findShown(known.key);
        const Place unit = unitKey ? language.findShown(*unitKey) : Place{};
        if (!label || !unit || !label.definition->text || !unit.definition->text) continue;
        const std::wstring expected = partsOf(*unit.definition->text).rest;
        const std::wstring found = partsOf(*label.definition->text).rest;
        if (found == expected) continue;
        findings.add(label.file->path, label.definition->line, Severity::Warning,
                     "the label has the unit '" + inUtf8(found) + "', and the read-outs have '" + inUtf8(expected) +
                         "' (" + std::string(*unitKey) + " in " + lineOf(unit, label) + ")",
                     "Write the unit of labels and read-outs in the same way.");
    }
}

} // namespace lngcheck

} // namespace eq
