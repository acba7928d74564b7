#pragma once

// How a function of the system fails: with a code for GetLastError, and a result that tells to look there.

#include "platform/standin/Errors.h"

namespace eq::standin {

/// Zero or null, whatever the function returns.
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

/// For a function whose failure is told by another result.
template <typename Result>
Result refuse(DWORD code, Result result) noexcept {
    SetLastError(code);
    return result;
}

} // namespace eq::standin
