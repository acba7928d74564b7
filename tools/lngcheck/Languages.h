#pragma once

#include "platform/win32.h"

#include <string>
#include <string_view>
#include <vector>

namespace eq {

/// The facts about languages that translators need.
namespace lngcheck {

/// A primary language serves the countries that have no file of their own.
[[nodiscard]] constexpr bool isPrimaryLanguage(WORD language) noexcept {
    return language != 0 && language == PRIMARYLANGID(language);
}

/// Returns the language id and the language's name in English if it is known, as "1031 (German)".
[[nodiscard]] std::string described(WORD language);

/// Whether the system knows the language. 0 is none.
[[nodiscard]] bool isLanguageOfWindows(WORD language);

/// Whether the letter, which is not ASCII, is a letter of the language. True for all letters of an unknown language.
[[nodiscard]] bool isInAlphabet(wchar_t letter, WORD language);

/// The code pages that the library accepts in a file of the language.
[[nodiscard]] std::vector<UINT> codepagesOf(WORD language);

/// Returns which of them Windows uses for the language; 0 if the library accepts none of Windows's code pages.
[[nodiscard]] UINT ansiCodepageOf(WORD language);

} // namespace lngcheck

} // namespace eq
