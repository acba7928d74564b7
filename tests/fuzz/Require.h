#pragma once

#include <cstdlib>

/// Aborts, which is a finding.
inline void require(bool holds) {
    if (!holds) std::abort();
}
