#pragma once

#include "tools/lngcheck/Findings.h"
#include "tools/lngcheck/LanguageFile.h"
#include "tools/lngcheck/LanguageSet.h"

#include <vector>

namespace eq {

namespace lngcheck {

/// Finds faults in one file that the library does not report: an unexpected name or encoding, duplicate and unknown
/// keys, invalid accelerators, and texts whose numbers or marks differ from the English text.
void checkFile(const LanguageFile& file, Findings& findings);

/// Finds texts of a language that do not suit each other: equal mnemonics, equal texts, and different units. Also finds
/// keys of the library that no file of the language defines.
void checkLanguage(const Language& language, Findings& findings);

/// Returns the number of keys of the library that the language lacks.
[[nodiscard]] int missingTexts(const Language& language);

/// Finds keys of the reference that no file of the language defines. Also notes the texts that equal the reference.
void checkAgainstReference(const Language& language, const LanguageFile& reference, Findings& findings);

} // namespace lngcheck

} // namespace eq
