#pragma once

#include "platform/win32.h"

#include <array>
#include <string>
#include <vector>

// Selects the language files that fill the store, and their order.

namespace eq {

/// The language id in the settings, which takes precedence over the system's language; 0 for none. Read once, while the
/// library loads.
extern WORD g_language_override;

/// Returns the language id that is in the settings now; 0 for none.
[[nodiscard]] WORD ReadLanguageOverride();

/// The profile whose language is read.
enum uilanguage_context { uilanguage_default = 0, uilanguage_user = 1 };

/// Returns the system's language. `uilanguage_default` reads the default profile; `uilanguage_user` reads the user's
/// profile, and the default profile if the user's profile has no language. Returns 0 if the system has no language or
/// fails.
[[nodiscard]] WORD ReadUiLanguage(uilanguage_context context);

[[nodiscard]] bool IsWindowsNt();

/// Returns the ANSI code page of a language; 0 for the language 0 and for a language that the system does not know.
[[nodiscard]] UINT DefaultCodepage(WORD language);

/// Returns the language id in a file's name: the first run of digits, directly after `prefix` and followed by one byte
/// and `extension`. Returns 0 for any other name. ASCII case does not matter.
[[nodiscard]] WORD ParseLanguageFileName(const std::string& name, const std::string& prefix,
                                         const std::string& extension);

/// Compares two texts without regard to ASCII case. Returns 0 if they are equal.
[[nodiscard]] int CompareNoCase(const std::string& a, const std::string& b);

/// Returns the languages whose files are read from one folder, in the order of reading. An id may be 0, or may occur
/// more than once.
[[nodiscard]] std::array<WORD, 4> languageOrder(WORD overrideLanguage, WORD systemLanguage);

/// Returns the full paths of all files of one language in a folder, in the order in which the system lists the files.
[[nodiscard]] std::vector<std::string> languageFilesOf(const std::string& folder, WORD language);

/// Returns the folder that is searched after `folder`: the parent if the name of `folder` begins with "debug" or
/// "release" in any case, else `folder` again.
[[nodiscard]] std::string secondFolder(const std::string& folder);

} // namespace eq
