#pragma once

#include <cstdlib>

namespace eq {

/// Aborts if `holds` is false. The fuzzer reports an abort as a finding.
inline void require(bool holds) {
    if (!holds) std::abort();
}

} // namespace eq
