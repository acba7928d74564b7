#include "tools/lngcheck/Findings.h"

#include "tools/common/Printable.h"

#include <algorithm>
#include <cstdio>
#include <map>

namespace eq {

namespace lngcheck {
namespace {

const char* introductionOf(Severity severity) {
    switch (severity) {
    case Severity::Warning:
        return "warning: ";
    case Severity::Note:
        return "note: ";
    default:
        return "";
    }
}

void printFinding(const Finding& finding) {
    const std::string line = finding.line == 0 ? "" : std::to_string(finding.line) + ":";
    const std::string text = finding.file + ":" + line + " " + introductionOf(finding.severity) + finding.text;
    std::printf("%s\n", printable(text).c_str());
}

} // namespace

void Findings::add(const std::string& file, int line, Severity severity, const std::string& text) {
    m_findings.push_back({file, line, severity, text});
}

const Finding& Findings::firstFault() const {
    return *std::ranges::find(m_findings, Severity::Fault, &Finding::severity);
}

std::size_t Findings::count(Severity severity) const {
    return static_cast<std::size_t>(std::ranges::count(m_findings, severity, &Finding::severity));
}

void Findings::print() const {
    std::map<std::string, std::size_t> order;
    for (const Finding& finding : m_findings) order.emplace(finding.file, order.size());

    std::vector<Finding> sorted = m_findings;
    std::ranges::stable_sort(sorted, [&](const Finding& a, const Finding& b) {
        return a.file == b.file ? a.line < b.line : order.at(a.file) < order.at(b.file);
    });
    for (const Finding& finding : sorted) printFinding(finding);
}

} // namespace lngcheck

} // namespace eq
