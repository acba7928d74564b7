#pragma once

#include "platform/win32.h"
#include "tools/lngcheck/LanguageFile.h"

#include <string>
#include <string_view>

namespace eq {

/// Advice in the terms of translators, in addition to the library's messages.
namespace lngcheck {

/// The bytes that some editors write at the start of a file in UTF-8.
inline constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";

/// Returns the language with which the library compares a code page tag: the digits before the last point of the name.
/// To select a file, the library uses the first digits of the name instead, so the two languages may differ.
[[nodiscard]] WORD languageOfTag(std::string_view name) noexcept;

/// Returns whether a line is a code page tag, or a wrong line that was probably intended as one.
[[nodiscard]] bool isCodepageTag(std::string_view line) noexcept;

/// Returns the advice for a line that the scanner refuses with `message`.
[[nodiscard]] std::string hintFor(const std::string& message, std::string_view line, int lineNumber,
                                  const LanguageFile& file);

/// Returns the advice for a text that is not ASCII, in a file without a code page tag.
[[nodiscard]] std::string hintForMissingTag(const LanguageFile& file);

/// Returns the advice for a file name in which the library finds no language.
[[nodiscard]] std::string hintForName(const std::string& name);

} // namespace lngcheck

} // namespace eq
