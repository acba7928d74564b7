#pragma once

#include "platform/win32.h"
#include "tools/lngcheck/LanguageFile.h"

#include <string>
#include <vector>

namespace eq {

namespace lngcheck {

/// One step of the library's search for language files.
struct SearchStep {
    std::string folder;
    std::string reason;
    WORD language;
    std::vector<std::string> paths; ///< in the order of reading, without the files of earlier steps
};

/// Returns the steps in which the library, installed in `folder`, looks for its language files.
[[nodiscard]] std::vector<SearchStep> searchSteps(const std::string& folder, WORD overrideLanguage,
                                                  WORD systemLanguage);

/// Writes the steps to standard output.
void printSteps(const std::vector<SearchStep>& steps);

/// Writes to standard output which definition of `key` the library uses, and which definitions it ignores. `files` are
/// the files of all steps, in order.
void explain(const std::string& key, const std::vector<LanguageFile>& files);

} // namespace lngcheck

} // namespace eq
