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

/// Converts a text of `codePage` (0: the system's ANSI code page) to 16-bit units. A zero inside the text ends the
/// result. Throws `convert_wstring_failed`; an empty text never fails.
[[nodiscard]] std::wstring convert_wstring(const std::string& text, unsigned codePage);

/// Converts back. Throws `convert_string_failed`, also when the result needs more than two bytes for each unit and two
/// more; an empty text never fails.
[[nodiscard]] std::string convert_string(const std::wstring& text, unsigned codePage);

/// The most bytes of `text`, up to `limit`, that hold whole characters of the code page.
[[nodiscard]] std::size_t wholeCharacters(std::string_view text, std::size_t limit, unsigned codePage) noexcept;

} // namespace eq
