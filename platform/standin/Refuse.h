#pragma once

// The failure of a system function: an error code for GetLastError, and a result that means failure.

#include "platform/standin/Errors.h"

namespace eq::standin {

/// Converts to the zero or null of any result type.
struct Refusal {
    template <typename Result>
    operator Result() const noexcept {
        return Result{};
    }
};

inline Refusal refuse(DWORD code) noexcept {
    SetLastError(code);
    return {};
}

/// For functions that report failure by another result.
template <typename Result>
Result refuse(DWORD code, Result result) noexcept {
    SetLastError(code);
    return result;
}

} // namespace eq::standin
