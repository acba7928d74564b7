#pragma once

#include "platform/win32.h"

#include <compare>
#include <cstdint>
#include <span>

namespace eq {

struct CodepagePair {
    std::uint16_t codepage;
    std::uint16_t language;

    // NOLINTNEXTLINE(modernize-use-nullptr): the operator contains no null pointer
    friend constexpr auto operator<=>(const CodepagePair&, const CodepagePair&) = default;
};

/// Returns the permitted pairs of a file's code page and its language, sorted by code page, then by language.
[[nodiscard]] std::span<const CodepagePair> codepagePairs() noexcept;

/// Returns whether the table contains exactly this pair.
[[nodiscard]] bool CodepageFitsLanguage(long codepage, WORD language) noexcept;

} // namespace eq
