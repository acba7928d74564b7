#pragma once

// The failure of a system function: an error code for GetLastError, and a result that means failure.

#include "platform/standin/Errors.h"

namespace eq::standin {

/// A value that converts to the zero or null of any result type.
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

/// Sets the error code and returns `result`, for functions whose failure is a result other than zero or null.
template <typename Result>
Result refuse(DWORD code, Result result) noexcept {
    SetLastError(code);
    return result;
}

} // namespace eq::standin
