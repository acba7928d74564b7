#pragma once

#include "platform/win32.h"

#include <span>
#include <string>
#include <string_view>

namespace eq {

/// Returns the code of a key word: the upper-case character code for a letter or digit, the virtual-key code for an
/// upper-case name such as "VK_F5", 0 for any other word.
[[nodiscard]] BYTE LookupVirtualKey(const std::string& word);

struct VirtualKeyName {
    std::string_view name;
    BYTE code;
};

/// Returns all key names. Letters and digits are not in the list.
[[nodiscard]] std::span<const VirtualKeyName> virtualKeyNames() noexcept;

} // namespace eq
