#pragma once

#include "tools/lngcheck/LanguageFile.h"

#include <string>

namespace eq {

namespace lngcheck {

/// The code page of pseudo-localised files.
inline constexpr UINT PseudoCodepage = 1252;

/// Returns the contents of a language file with changed texts of `reference`. The texts have accents and brackets, and
/// are longer by a third. They remain readable, and show which texts are cut off or not translated. Throws FileError
/// for a text with characters outside `PseudoCodepage`.
[[nodiscard]] std::string pseudoLocalised(const LanguageFile& reference);

} // namespace lngcheck

} // namespace eq
