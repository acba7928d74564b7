#pragma once

#include <cerrno>

#include <poll.h>

namespace eq {

enum class Direction : short { Reading = POLLIN, Writing = POLLOUT };

/// Returns true if a read or a write that has just failed should be repeated. After a signal, returns true immediately.
/// If another program has made the pipe non-blocking, waits until the pipe is ready. Returns false for any other error,
/// and keeps `errno`.
[[nodiscard]] inline bool mayTryAgain(int descriptor, Direction direction) {
    if (errno == EINTR) return true;
    if (errno != EAGAIN) return false;
    pollfd pipe = {descriptor, static_cast<short>(direction), 0};
    return poll(&pipe, 1, -1) > 0 || errno == EINTR;
}

} // namespace eq
