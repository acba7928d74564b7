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

/// Something to tell about a line of a file, or about the file as a whole, which is line 0.
struct Finding {
    std::string file;
    int line;
    Severity severity;
    std::string text;
};

class Findings {
public:
    void add(const std::string& file, int line, Severity severity, const std::string& text);

    /// Returns the first fault. There must be one.
    [[nodiscard]] const Finding& firstFault() const;

    [[nodiscard]] std::size_t count(Severity severity) const;

    /// Writes all to standard output, file by file in the order of their first finding, and each in the order of its
    /// lines.
    void print() const;

private:
    std::vector<Finding> m_findings;
};

} // namespace lngcheck

} // namespace eq
