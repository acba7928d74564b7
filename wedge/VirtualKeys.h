#pragma once

#include "platform/win32.h"

#include <span>
#include <string>
#include <string_view>

namespace eq {

/// The code of a key word in upper case: a letter or digit stands for its own character code, a name such as "VK_F5"
/// for the virtual-key code. 0 for any other word.
[[nodiscard]] BYTE LookupVirtualKey(const std::string& word);

struct VirtualKeyName {
    std::string_view name;
    BYTE code;
};

/// All names, for those who list them. Letters and digits are not among them.
[[nodiscard]] std::span<const VirtualKeyName> virtualKeyNames() noexcept;

} // namespace eq
