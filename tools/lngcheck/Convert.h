#pragma once

#include "platform/win32.h"

#include <string>

namespace eq {

namespace lngcheck {

/// Converts a text in UTF-8 to a language file in the code pages that its tags name, or a language file to a text in
/// UTF-8. The file whose name ends in ".lng" is the language file. Returns a message about lines that were left out, or
/// an empty text. Throws FileError if the conversion would lose characters. Throws UsageError if both names or none end
/// in ".lng".
[[nodiscard]] std::string convertFile(const std::string& from, const std::string& to);

/// Writes a new language file with all keys, and with the English texts as comments. If most shipped languages have the
/// English text of a key, the new file has it, too. Throws FileError, also if the file exists. Throws UsageError if the
/// file name does not contain the language id as the library expects it.
void writeNewFile(WORD language, const std::string& path);

} // namespace lngcheck

} // namespace eq
