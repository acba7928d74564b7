#include "support/AsciiText.h"
#include "tools/lngcheck/checks/TextChecks.h"

#include <algorithm>

namespace eq {

namespace lngcheck {

std::string CheckedText::quoted() const {
    constexpr std::size_t Most = 60;
    const std::wstring& whole = text();
    return "'" + inUtf8(whole.substr(0, Most)) + (whole.size() > Most ? "...'" : "'");
}

void CheckedText::report(Severity severity, const std::string& text, const std::string& hint) const {
    m_findings.add(m_file.path, m_definition.line, severity, text, hint);
}

bool isButton(std::string_view key) {
    const auto isKey = [key](std::string_view button) { return equalNoCase(button, key); };
    return std::ranges::any_of(PropertySheetButtons, isKey) || std::ranges::any_of(WizardButtons, isKey);
}

} // namespace lngcheck

} // namespace eq
