#pragma once

#include "support/ContextException.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace eq {

class convert_wstring_failed : public ContextException {
public:
    using ContextException::ContextException;
};

class convert_string_failed : public ContextException {
public:
    using ContextException::ContextException;
};

/// Returns a text of `codePage` (0: the system's ANSI code page) in 16-bit units. The result ends before the first
/// zero. Throws `convert_wstring_failed`, but never for an empty text.
[[nodiscard]] std::wstring convert_wstring(const std::string& text, unsigned codePage);

/// Returns a text of 16-bit units in `codePage`. The result ends before the first zero. Throws `convert_string_failed`,
/// also if n units need more than 2n + 2 bytes, but never for an empty text.
[[nodiscard]] std::string convert_string(const std::wstring& text, unsigned codePage);

/// Returns the length in bytes of the longest start of `text` that has at most `limit` bytes and only whole characters
/// of the code page.
[[nodiscard]] std::size_t wholeCharacters(std::string_view text, std::size_t limit, unsigned codePage) noexcept;

} // namespace eq
