#pragma once

#include "platform/win32.h"

#include <string>
#include <string_view>

namespace eq {

/// The result of a conversion. If the system refuses, `text` is empty and `error` is the system's code.
template <typename Text>
struct Converted {
    Text text;
    DWORD error = ERROR_SUCCESS;
};

/// How a conversion to wide text treats bytes that are invalid in the code page.
enum class InvalidBytes { Replaced, Refused };

/// Returns a text of `codePage` (0: the system's ANSI code page) in 16-bit units. An empty text never fails.
[[nodiscard]] Converted<std::wstring> toWide(std::string_view text, UINT codePage,
                                             InvalidBytes invalid = InvalidBytes::Replaced);

/// A value of `mostBytes` that means no limit.
inline constexpr int AnySize = 0;

/// Returns a text in `codePage`. The system refuses a result of more than `mostBytes`. `substitute` replaces the
/// characters that the code page lacks; null selects the default character of the code page. An empty text never fails.
[[nodiscard]] Converted<std::string> toNarrow(std::wstring_view text, UINT codePage, int mostBytes = AnySize,
                                              const char* substitute = nullptr);

/// Returns whether a code page (0: the system's ANSI code page) is UTF-8.
[[nodiscard]] bool isUtf8Codepage(unsigned codePage) noexcept;

} // namespace eq
