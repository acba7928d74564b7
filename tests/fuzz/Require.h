#pragma once

#include <cstdlib>

namespace eq {

/// Aborts, which is a finding.
inline void require(bool holds) {
    if (!holds) std::abort();
}

} // namespace eq
