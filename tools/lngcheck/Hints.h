#pragma once

#include "platform/win32.h"
#include "tools/lngcheck/LanguageFile.h"

#include <string>
#include <string_view>

namespace eq {

/// Advice in a translator's words, beside messages in the library's words.
namespace lngcheck {

/// The bytes at the start of a file with which some editors mark UTF-8.
inline constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";

/// Returns the language that counts for the code page tag: the digits before the last point of the name. The library
/// chooses a file by the first digits of the name, so that the two can differ.
[[nodiscard]] WORD languageOfTag(std::string_view name) noexcept;

/// Whether a line, right or wrong, is meant to be a code page tag.
[[nodiscard]] bool isCodepageTag(std::string_view line) noexcept;

/// Returns the advice about a line that the scanner refuses with `message`.
[[nodiscard]] std::string hintFor(const std::string& message, std::string_view line, int lineNumber,
                                  const LanguageFile& file);

/// Returns the advice about a text that is not ASCII, in a file without a code page tag.
[[nodiscard]] std::string hintForMissingTag(const LanguageFile& file);

/// Returns the advice about a name from which the library takes no language.
[[nodiscard]] std::string hintForName(const std::string& name);

} // namespace lngcheck

} // namespace eq
