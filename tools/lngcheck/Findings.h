#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace eq {

namespace lngcheck {

enum class Severity {
    Fault,   ///< a text is lost or wrong, or no file is read at all
    Warning, ///< may be meant so, but will not look right everywhere
    Note,
};

/// A message about a line of a file, or about the file as a whole, which is line 0.
struct Finding {
    std::string file;
    int line;
    Severity severity;
    std::string text;
    std::string hint; ///< what a translator can do about it; may be empty
};

class Findings {
public:
    /// A text or hint that is too long for a terminal loses its middle.
    void add(const std::string& file, int line, Severity severity, const std::string& text,
             const std::string& hint = {});

    /// Returns the first fault. There must be one.
    [[nodiscard]] const Finding& firstFault() const;

    [[nodiscard]] std::size_t count(Severity severity) const;

    [[nodiscard]] const std::vector<Finding>& all() const { return m_findings; }

    /// Writes all to standard output for a reader: file by file in the order of their first finding, and each file in
    /// the order of its lines. A hint is below the first finding that has it, and a long series of findings of one kind
    /// is cut.
    void print() const;

    /// Writes all in the same order to standard output, as one JSON object per line.
    void printJson() const;

private:
    [[nodiscard]] std::vector<Finding> sorted() const;

    std::vector<Finding> m_findings;
};

} // namespace lngcheck

} // namespace eq
