#pragma once

#include "platform/win32.h"

#include <cstdint>

namespace eq {

/// The resource types that are rewritten, as the numbers that Win32 gives them.
enum class ResourceType : std::uint16_t {
    Menu = 4,
    Dialog = 5,
    String = 6,
    Accelerator = 9,
    DialogInit = 240,
};

/// Strings in a bundle, each a 16-bit count and that many 16-bit units. Bundle n holds the ids 16(n - 1) to
/// 16(n - 1) + 15.
inline constexpr int StringsInBundle = 16;

/// An accelerator as a resource holds it. The last one of a table has AccelTableEnd in its flags.
struct ACCELTABLEENTRY {
    std::uint16_t fFlags;
    std::uint16_t wAnsi;
    std::uint16_t wId;
    std::uint16_t padding;
};
static_assert(sizeof(ACCELTABLEENTRY) == 8);
inline constexpr unsigned AccelTableEnd = 0x80;

} // namespace eq
