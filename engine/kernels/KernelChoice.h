#pragma once

#include "engine/kernels/BlockKernel.h"

#include <span>

namespace eq {

/// Returns the kernels that this processor and the operating system can run, from the plain kernel to the fastest. The
/// first call queries the processor, so the audio thread must not make the first call.
[[nodiscard]] std::span<const BlockKernel* const> availableKernels() noexcept;

} // namespace eq
