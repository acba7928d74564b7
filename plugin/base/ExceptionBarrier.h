#pragma once

namespace eq {

/// Returns the result of `action`, or the zero of its type (0, null or nothing) if `action` throws. The host's
/// interface cannot represent an exception, so no exception may leave an entry function.
template <typename Action>
auto withExceptionBarrier(const Action& action) noexcept -> decltype(action()) {
    using Result = decltype(action());
    try {
        return action();
    } catch (...) {
        return Result();
    }
}

} // namespace eq
