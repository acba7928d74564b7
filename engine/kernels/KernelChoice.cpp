#include "engine/kernels/KernelChoice.h"

#include "engine/kernels/Kernels.h"
#include "engine/kernels/Plain.h"

#include <cstddef>

namespace eq {

std::span<const BlockKernel* const> availableKernels() noexcept {
    // A processor that has one of these instruction sets also has the instruction sets of all previous rows.
    static constexpr const BlockKernel* Kernels[] = {
        &PlainKernel,
#ifdef EQ_SSE2_KERNEL
        &Sse2Kernel,
#endif
#ifdef EQ_AVX2_KERNEL
        &Avx2Kernel,
#endif
    };
    static const std::size_t count = [] {
        std::size_t available = 1;
#ifdef EQ_SSE2_KERNEL
        if (__builtin_cpu_supports("sse2")) ++available;
#endif
#ifdef EQ_AVX2_KERNEL
        // This function also checks that the operating system saves the wide registers.
        if (__builtin_cpu_supports("avx2")) ++available;
#endif
        return available;
    }();
    return std::span(Kernels).first(count);
}

} // namespace eq
