#pragma once

#include "engine/kernels/BlockKernel.h"

namespace eq {

/// The kernel for SSE2: the four bands are in two vectors of two doubles.
extern const BlockKernel Sse2Kernel;

/// The kernel for AVX2: the four bands are in one vector of four doubles. Only 64-bit builds contain this kernel. In a
/// 32-bit process, a single use of the wide registers slows all later SSE code of the thread, including the host's
/// code.
extern const BlockKernel Avx2Kernel;

} // namespace eq
