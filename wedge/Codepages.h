#pragma once

#include "platform/win32.h"

#include <compare>
#include <cstdint>
#include <span>

namespace eq {

struct CodepagePair {
    std::uint16_t codepage;
    std::uint16_t language;

    // NOLINTNEXTLINE(modernize-use-nullptr): there is none
    friend constexpr auto operator<=>(const CodepagePair&, const CodepagePair&) = default;
};

/// Which code pages may be declared for a file of which language, sorted by code page, then by language.
[[nodiscard]] std::span<const CodepagePair> codepagePairs() noexcept;

/// Whether the table pairs exactly this code page with this language.
[[nodiscard]] bool CodepageFitsLanguage(long codepage, WORD language) noexcept;

} // namespace eq
