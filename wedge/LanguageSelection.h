#pragma once

#include "platform/win32.h"

#include <array>
#include <string>
#include <vector>

// Which language files fill the store, and in what order.

namespace eq {

/// The language that the settings ask for, whatever the system's; 0 for none. Read once, while the library loads.
extern WORD g_language_override;

/// Reads the settings value anew.
[[nodiscard]] WORD ReadLanguageOverride();

/// Whose language is asked for.
enum uilanguage_context { uilanguage_default = 0, uilanguage_user = 1 };

/// The system's language: that of the default profile, or the user's with a fall-back to the default profile's. 0 if
/// the system does not tell.
[[nodiscard]] WORD ReadUiLanguage(uilanguage_context context);

[[nodiscard]] bool IsWindowsNt();

/// The ANSI code page of a language; 0 for the language 0 or when the system does not know.
[[nodiscard]] UINT DefaultCodepage(WORD language);

/// The language id in a file's name: its first run of digits, with `prefix` right in front, and one byte and
/// `extension` behind it. 0 for a name of another form.
[[nodiscard]] WORD ParseLanguageFileName(const std::string& name, const std::string& prefix,
                                         const std::string& extension);

/// 0 if the texts are equal but for the case of ASCII letters.
[[nodiscard]] int CompareNoCase(const std::string& a, const std::string& b);

/// The languages of one turn, in the order in which they are scanned. Ids may be 0 or repeat.
[[nodiscard]] std::array<WORD, 4> languageOrder(WORD overrideLanguage, WORD systemLanguage);

/// The full paths of all files of one language in a folder, in the order in which the system lists them.
[[nodiscard]] std::vector<std::string> languageFilesOf(const std::string& folder, WORD language);

/// The folder of the second turn: the parent of a folder whose name begins with "debug" or "release", else the folder
/// itself.
[[nodiscard]] std::string secondFolder(const std::string& folder);

} // namespace eq
