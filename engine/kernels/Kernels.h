#pragma once

#include "engine/kernels/BlockKernel.h"

/// Two vectors of two bands.
extern const BlockKernel sse2Kernel;

/// One vector of four bands. For 64-bit builds alone: in a 32-bit process, one use of the wide registers was seen to
/// slow all later SSE code of its thread, the host's too.
extern const BlockKernel avx2Kernel;
