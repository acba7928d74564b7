#pragma once

#include "tools/lngcheck/Findings.h"
#include "tools/lngcheck/LanguageFile.h"

#include <vector>

namespace eq {

namespace lngcheck {

/// Looks for what the library would take without a word, although it cannot be meant: keys defined twice or unknown,
/// accelerators that are none, texts that do not fit their place.
void checkFile(const LanguageFile& file, Findings& findings);

/// Looks for the library's keys that no file of a language defines, language by language.
void checkCompleteness(const std::vector<LanguageFile>& files, Findings& findings);

/// Looks for the reference's keys that no file of a language defines, and names the texts that are the same as there.
void checkAgainstReference(const std::vector<LanguageFile>& files, const LanguageFile& reference, Findings& findings);

} // namespace lngcheck

} // namespace eq
