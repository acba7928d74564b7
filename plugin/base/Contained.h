#pragma once

/// Runs `action` and gives its result. The host's interface has no form for an exception, so whatever is thrown ends
/// here, and the result is then the zero of its type: 0, null or nothing.
template <typename Action>
auto contained(const Action& action) noexcept -> decltype(action()) {
    using Result = decltype(action());
    try {
        return action();
    } catch (...) {
        return Result();
    }
}
