#include "tools/lngcheck/Findings.h"

#include "tools/common/Printable.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <sstream>
#include <string_view>

namespace eq {

namespace lngcheck {
namespace {

constexpr std::size_t MostOfAKind = 30;
constexpr std::size_t LineLength = 80;
constexpr std::string_view HintIndent = "    ";

const char* nameOf(Severity severity) {
    switch (severity) {
    case Severity::Warning:
        return "warning";
    case Severity::Note:
        return "note";
    default:
        return "fault";
    }
}

/// Returns the text without its middle if it is very long. A line of a file may have megabytes.
std::string shortened(const std::string& text) {
    constexpr std::size_t Most = 600;
    constexpr std::size_t Kept = 200;
    if (text.size() <= Most) return text;
    return text.substr(0, Kept) + " [...] " + text.substr(text.size() - Kept);
}

/// Returns "file:line:", or "file:" for the whole file.
std::string placeOf(const Finding& finding) {
    return finding.file + ":" + (finding.line == 0 ? "" : std::to_string(finding.line) + ":");
}

void printFinding(const Finding& finding) {
    const std::string severity =
        finding.severity == Severity::Fault ? "" : std::string(nameOf(finding.severity)) + ": ";
    std::printf("%s\n", printable(placeOf(finding) + " " + severity + finding.text).c_str());
}

/// Writes a hint, with line breaks between words. The lines are indented, so that no line looks like a finding,
/// "file:line: text".
void printHint(const std::string& hint) {
    std::istringstream words(printable(hint));
    std::string line;
    for (std::string word; words >> word;) {
        if (!line.empty() && line.size() + 1 + word.size() > LineLength) {
            std::printf("%s\n", line.c_str());
            line.clear();
        }
        line += (line.empty() ? std::string(HintIndent) : " ") + word;
    }
    if (!line.empty()) std::printf("%s\n", line.c_str());
}

} // namespace

void Findings::add(const std::string& file, int line, Severity severity, const std::string& text,
                   const std::string& hint) {
    m_findings.push_back({file, line, severity, shortened(text), shortened(hint)});
}

const Finding& Findings::firstFault() const {
    return *std::ranges::find(m_findings, Severity::Fault, &Finding::severity);
}

std::size_t Findings::count(Severity severity) const {
    return static_cast<std::size_t>(std::ranges::count(m_findings, severity, &Finding::severity));
}

std::vector<Finding> Findings::sorted() const {
    std::map<std::string, std::size_t> order;
    for (const Finding& finding : m_findings) order.emplace(finding.file, order.size());

    std::vector<Finding> sorted = m_findings;
    std::ranges::stable_sort(sorted, [&](const Finding& a, const Finding& b) {
        return a.file == b.file ? a.line < b.line : order.at(a.file) < order.at(b.file);
    });
    return sorted;
}

void Findings::print() const {
    std::string file;
    struct Kind {
        std::string firstText;
        std::size_t count = 0;
    };
    std::map<std::string, Kind> kinds; // of one file; the key is the hint, or the text if there is no hint
    const auto endFile = [&] {
        for (const auto& [ignored, kind] : kinds) {
            if (kind.count > MostOfAKind)
                std::printf("%s: %zu more like '%s' not shown\n", printable(file).c_str(), kind.count - MostOfAKind,
                            printable(kind.firstText).c_str());
        }
        kinds.clear();
    };
    for (const Finding& finding : sorted()) {
        if (finding.file != file) endFile();
        file = finding.file;
        Kind& kind = kinds[finding.hint.empty() ? finding.text : finding.hint];
        if (++kind.count > MostOfAKind) continue;
        if (kind.count == 1) kind.firstText = finding.text;
        printFinding(finding);
        if (kind.count == 1) printHint(finding.hint);
    }
    endFile();
}

void Findings::printJson() const {
    for (const Finding& finding : sorted())
        std::printf("{\"file\": %s, \"line\": %d, \"severity\": \"%s\", \"text\": %s, \"hint\": %s}\n",
                    jsonString(finding.file).c_str(), finding.line, nameOf(finding.severity),
                    jsonString(finding.text).c_str(), jsonString(finding.hint).c_str());
}

} // namespace lngcheck

} // namespace eq
