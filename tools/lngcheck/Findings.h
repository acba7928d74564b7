#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace eq {

namespace lngcheck {

enum class Severity {
    Fault,   ///< a text is lost or wrong, or the library refuses all files
    Warning, ///< may be intended, but looks wrong on some systems
    Note,
};

/// A message about a line of a file. Line 0 is the whole file.
struct Finding {
    std::string file;
    int line;
    Severity severity;
    std::string text;
    std::string hint; ///< advice for the translator; may be empty
};

class Findings {
public:
    /// Adds a finding. Removes the middle of a text or hint that is very long.
    void add(const std::string& file, int line, Severity severity, const std::string& text,
             const std::string& hint = {});

    /// Returns the first fault. There must be one.
    [[nodiscard]] const Finding& firstFault() const;

    [[nodiscard]] std::size_t count(Severity severity) const;

    [[nodiscard]] const std::vector<Finding>& all() const { return m_findings; }

    /// Writes the findings to standard output for people. The files are in the order of their first findings, and the
    /// findings of a file are in the order of its lines. In a file, only the first of several findings with the same
    /// hint shows the hint. Most findings of a frequent kind are left out.
    void print() const;

    /// Writes all findings to standard output in the same order, as one JSON object per line.
    void printJson() const;

private:
    [[nodiscard]] std::vector<Finding> sorted() const;

    std::vector<Finding> m_findings;
};

} // namespace lngcheck

} // namespace eq
