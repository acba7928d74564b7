#pragma once

#include <cerrno>

#include <poll.h>

namespace eq {

enum class Direction : short { Reading = POLLIN, Writing = POLLOUT };

/// Returns whether a read or a write that has just failed should be repeated: a signal came, or a program at the other
/// end has made the pipe one that does not wait. Waits until the pipe is ready, and keeps `errno` otherwise.
[[nodiscard]] inline bool mayTryAgain(int descriptor, Direction direction) {
    if (errno == EINTR) return true;
    if (errno != EAGAIN) return false;
    pollfd pipe = {descriptor, static_cast<short>(direction), 0};
    return poll(&pipe, 1, -1) > 0 || errno == EINTR;
}

} // namespace eq
