#pragma once

#include "platform/win32.h"
#include "tools/lngcheck/LanguageFile.h"

#include <string>
#include <vector>

namespace eq {

namespace lngcheck {

/// One search of the library for files.
struct SearchStep {
    std::string folder;
    std::string reason;
    WORD language;
    std::vector<std::string> paths; ///< in the order in which they are read; without those that a step before read
};

/// The steps in which the library, installed in `folder`, looks for its language files.
[[nodiscard]] std::vector<SearchStep> searchSteps(const std::string& folder, WORD overrideLanguage,
                                                  WORD systemLanguage);

/// Writes the steps to standard output.
void printSteps(const std::vector<SearchStep>& steps);

/// Writes to standard output where the library takes the text of `key` from, and which definitions it ignores. `files`
/// are those of the steps, in order.
void explain(const std::string& key, const std::vector<LanguageFile>& files);

} // namespace lngcheck

} // namespace eq
