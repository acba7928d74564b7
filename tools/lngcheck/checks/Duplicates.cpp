#include "tools/lngcheck/Languages.h"
#include "tools/lngcheck/Letters.h"
#include "tools/lngcheck/checks/TextChecks.h"

#include <map>
#include <span>

namespace eq {

namespace lngcheck {
namespace {

constexpr std::array<std::string_view, 3> Units = {"IDS_DB", "IDS_Hz", "IDS_kHz"};
constexpr std::array<std::string_view, 3> Rows = {"IDD_Options_Q", "IDD_Options_Freq", "IDD_Options_Gain"};
constexpr std::array<std::string_view, 5> Columns = {"IDD_Options_B1", "IDD_Options_B2", "IDD_Options_B3",
                                                     "IDD_Options_B4", "IDD_Options_Master"};
constexpr std::span<const std::string_view> Groups[] = {Units, Rows, Columns, PropertySheetButtons, WizardButtons};

/// Returns a text for comparisons: in small letters, without blanks and the '&' of mnemonics.
std::wstring comparable(std::wstring_view text) {
    std::wstring result;
    for (const wchar_t c : text) {
        if (c != L'&' && !isBlank(c)) result += smallLetter(c);
    }
    return result;
}

void checkGroup(const Language& language, std::span<const std::string_view> keys, Findings& findings) {
    std::map<std::wstring, Place> shown;
    for (const std::string_view key : keys) {
        const Place place = language.findShown(key);
        if (!place || !place.definition->text || place.definition->text->empty()) continue;
        const auto [other, isNew] = shown.try_emplace(comparable(*place.definition->text), place);
        if (isNew) continue;
        findings.add(place.file->path, place.definition->line, Severity::Warning,
                     place.definition->key + " has the same text as " + other->second.definition->key + " in " +
                         lineOf(other->second, place),
                     "The user sees both texts together, and cannot distinguish them.");
    }
}

} // namespace

void checkEqualTexts(const Language& language, Findings& findings) {
    for (const auto& group : Groups) checkGroup(language, group, findings);
}

void checkUntranslated(const CheckedText& text) {
    constexpr WORD English = 0x09;
    if (PRIMARYLANGID(text.language()) == English || text.language() == 0) return;
    if (text.text() != text.english() || languagesWithEnglishText(text.key()) > 0) return;
    text.warn("the text " + text.quoted() + " is English", "All shipped languages translate this text.");
}

} // namespace lngcheck

} // namespace eq
