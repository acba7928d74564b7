#pragma once

#include "platform/win32.h"

#include <gtest/gtest.h>

/// Whether a call of the system failed, and for this reason. The code is gone behind it, so that a next call that fails
/// without a reason shows.
inline testing::AssertionResult refused(bool hasFailed, DWORD reason) {
    const DWORD code = GetLastError();
    SetLastError(NO_ERROR);
    if (hasFailed && code == reason) return testing::AssertionSuccess();
    return testing::AssertionFailure() << (hasFailed ? "refused" : "done") << " with code " << code;
}
