#pragma once

#include "platform/win32.h"

#include <string>
#include <string_view>
#include <vector>

namespace eq {

/// Facts about languages, for the checks and for messages to translators.
namespace lngcheck {

/// Returns whether an id is that of a primary language. The file of a primary language serves all countries without a
/// separate file.
[[nodiscard]] constexpr bool isPrimaryLanguage(WORD language) noexcept {
    return language != 0 && language == PRIMARYLANGID(language);
}

/// Returns the language id, with the English name of the language if it is known: "1031 (German)".
[[nodiscard]] std::string described(WORD language);

/// Returns whether the system knows the language; false for 0.
[[nodiscard]] bool isLanguageOfWindows(WORD language);

/// Returns whether a letter outside ASCII belongs to the alphabet of the language; true for an unknown language.
[[nodiscard]] bool isInAlphabet(wchar_t letter, WORD language);

/// Returns the code pages that the library accepts in a file of the language.
[[nodiscard]] std::vector<UINT> codepagesOf(WORD language);

/// Returns the ANSI code page of Windows that the library accepts for the language; 0 if it accepts none.
[[nodiscard]] UINT ansiCodepageOf(WORD language);

} // namespace lngcheck

} // namespace eq
