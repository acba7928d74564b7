#pragma once

#include "platform/win32.h"

#include <string>

namespace eq {

namespace lngcheck {

/// Converts a text in UTF-8 to a language file in the code pages that its tags name, or a language file to a text in
/// UTF-8. The name that ends in ".lng" is the language file. Returns a message about lines that were left out, or an
/// empty text. Throws FileError for what cannot be converted without a loss, and UsageError if not one of the two names
/// ends in ".lng".
[[nodiscard]] std::string convertFile(const std::string& from, const std::string& to);

/// Writes a new language file: all keys, with the English texts as comments. Texts that most languages leave in English
/// are already there. Throws FileError, also if the file exists, and UsageError if the name is not that of a file of
/// the language.
void writeNewFile(WORD language, const std::string& path);

} // namespace lngcheck

} // namespace eq
