#pragma once

#include "tools/lngcheck/Findings.h"
#include "tools/lngcheck/LanguageFile.h"
#include "tools/lngcheck/LanguageSet.h"

#include <vector>

namespace eq {

namespace lngcheck {

/// Looks for faults in one file that the library does not report: a name or encoding that it does not expect, keys
/// defined twice or unknown, accelerators that are none, texts that differ from the English ones in what must be equal.
void checkFile(const LanguageFile& file, Findings& findings);

/// Looks for faults between the texts of a language: equal mnemonics or texts, different units. Looks for the library's
/// keys that no file of the language defines.
void checkLanguage(const Language& language, Findings& findings);

/// Returns how many of the library's keys the language lacks.
[[nodiscard]] int missingTexts(const Language& language);

/// Looks for the reference's keys that no file of a language defines, and names the texts that are the same as there.
void checkAgainstReference(const Language& language, const LanguageFile& reference, Findings& findings);

} // namespace lngcheck

} // namespace eq
