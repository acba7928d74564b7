#pragma once

#include "platform/UniqueHandle.h"

#include <unistd.h>

namespace eq {

inline bool closeDescriptor(int descriptor) noexcept {
    return ::close(descriptor) == 0;
}
using FileDescriptor = UniqueHandle<int, closeDescriptor, -1>;

} // namespace eq
