#pragma once

#include "tools/lngcheck/LanguageFile.h"

#include <string>

namespace eq {

namespace lngcheck {

/// The code page of pseudo-localised files.
inline constexpr UINT PseudoCodepage = 1252;

/// The contents of a language file whose texts are those of `reference` with accents, in brackets and longer by a
/// third. It stays readable, and shows which texts are not translated and which are cut off. Throws FileError for a
/// text that is not Western.
[[nodiscard]] std::string pseudoLocalised(const LanguageFile& reference);

} // namespace lngcheck

} // namespace eq
