#pragma once

#include "engine/kernels/BlockKernel.h"

namespace eq {

/// Two vectors of two bands.
extern const BlockKernel Sse2Kernel;

/// One vector of four bands, for 64-bit builds only. In a 32-bit process, one use of the wide registers was seen to
/// slow all later SSE code of its thread, including the host's code.
extern const BlockKernel Avx2Kernel;

} // namespace eq
