#include "engine/kernels/KernelChoice.h"

#include "engine/kernels/Kernels.h"
#include "engine/kernels/Plain.h"

#include <cstddef>

namespace {

class Choice {
public:
    Choice() noexcept {
        add(plainKernel);
#ifdef EQ_SSE2_KERNEL
        if (__builtin_cpu_supports("sse2")) add(sse2Kernel);
#endif
#ifdef EQ_AVX2_KERNEL
        // This asks the system, too, whether it keeps the wide registers.
        if (__builtin_cpu_supports("avx2")) add(avx2Kernel);
#endif
    }

    [[nodiscard]] std::span<const BlockKernel* const> kernels() const noexcept {
        return {list, count};
    }

private:
    void add(const BlockKernel& kernel) noexcept {
        if (count < Most) list[count++] = &kernel;
    }

    static constexpr std::size_t Most = 8;
    const BlockKernel* list[Most] = {};
    std::size_t count = 0;
};

} // namespace

std::span<const BlockKernel* const> availableKernels() noexcept {
    static const Choice choice;
    return choice.kernels();
}

const BlockKernel& fastestKernel() noexcept {
    return *availableKernels().back();
}
