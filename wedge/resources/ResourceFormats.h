#pragma once

#include "platform/win32.h"

#include <cstdint>

namespace eq {

/// The resource types that are rewritten, with their numbers in Win32.
enum class ResourceType : std::uint16_t {
    Menu = 4,
    Dialog = 5,
    String = 6,
    Accelerator = 9,
    DialogInit = 240,
};

/// The number of strings in a bundle. Each string is a 16-bit count, followed by that many 16-bit units. Bundle n
/// contains the ids 16(n - 1) to 16(n - 1) + 15.
inline constexpr int StringsInBundle = 16;

/// An entry of an accelerator table in a resource. The last entry has AccelTableEnd in its flags.
struct ACCELTABLEENTRY {
    std::uint16_t fFlags;
    std::uint16_t wAnsi;
    std::uint16_t wId;
    std::uint16_t padding;
};
static_assert(sizeof(ACCELTABLEENTRY) == 8);
inline constexpr unsigned AccelTableEnd = 0x80;

} // namespace eq
