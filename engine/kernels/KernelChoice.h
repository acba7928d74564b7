#pragma once

#include "engine/kernels/BlockKernel.h"

#include <span>

namespace eq {

/// Returns the kernels that this processor and its system can run, from the plain one to the fastest. The first call
/// asks the processor, so it must not be on the audio thread.
[[nodiscard]] std::span<const BlockKernel* const> availableKernels() noexcept;

} // namespace eq
