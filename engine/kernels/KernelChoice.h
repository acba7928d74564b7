#pragma once

#include "engine/kernels/BlockKernel.h"

#include <span>

/// The kernels that this processor and its system can run, from the plain one to the fastest.
[[nodiscard]] std::span<const BlockKernel* const> availableKernels() noexcept;

/// The fastest of them. Chosen at the first call, which belongs off the audio thread.
[[nodiscard]] const BlockKernel& fastestKernel() noexcept;
