// The kernels of the 32-bit DLL, in a 64-bit process (see reassemble), in the place of this build's own: what is
// linked with this file finds them as the available ones.
//
// They read and write below 4 GiB. So all memory comes from the heap of a program that is linked to lie there, and main
// moves to a stack there, too.

#include "engine/kernels/KernelChoice.h"
#include "engine/kernels/Plain.h"

#include <malloc.h>
#include <pthread.h>
#include <sys/mman.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <memory>

extern "C" {

using Address = std::uint32_t;

/// BlockKernel as the 32-bit code lays it out.
struct ThirtyTwoBitKernel {
    Address name;
    Address filter;
    Address filterTwo;
    Address change;
    Address fadeIn;
    Address fadeOut;
};

extern const ThirtyTwoBitKernel thirtyTwoBitPlainKernel asm("_plainKernel");
extern const ThirtyTwoBitKernel thirtyTwoBitSse2Kernel asm("_sse2Kernel");

/// Jumps to a function of the 32-bit code. `stack` points to its arguments.
void jumpToThirtyTwoBits(Address function, Address stack);
}

// The callee keeps the lower halves of the registers that it must keep. What the 32-bit code expects of its runtime
// library stands below: memmove, for blocks that do not overlap, and the probe of large stack frames. Nothing throws.
asm(R"(
    .text
    .globl _memmove, ___chkstk_ms, ___gxx_personality_v0
    .set ___gxx_personality_v0, 0
jumpToThirtyTwoBits:
    pushq %rbx
    pushq %rbp
    pushq %r12
    movq %rsp, callersStack(%rip)
    movl %edi, %eax
    leal -4(%esi), %esp
    movl $1f, (%esp)
    jmp *%rax
1:  movq callersStack(%rip), %rsp
    popq %r12
    popq %rbp
    popq %rbx
    ret

_memmove:
    movl %esi, %r8d
    movl %edi, %r9d
    movl 4(%esp), %edi
    movl 8(%esp), %esi
    movl 12(%esp), %ecx
    movl %edi, %eax
    rep movsb
    movl %r8d, %esi
    movl %r9d, %edi
___chkstk_ms:
    movl (%esp), %r11d
    leal 4(%esp), %esp
    jmp *%r11

    .bss
    .align 8
callersStack:
    .zero 8
    .text
)");

namespace {

constexpr std::size_t StackSize = 1 << 20;

Address addressOf(const void* pointer) {
    const auto value = reinterpret_cast<std::uintptr_t>(pointer);
    if (value > UINT32_MAX) {
        std::fputs("memory above 4 GiB\n", stderr);
        std::abort();
    }
    return static_cast<Address>(value);
}

/// FilterRun as the 32-bit code lays it out. What it leads to has the same layout in both.
struct ThirtyTwoBitRun {
    explicit ThirtyTwoBitRun(const FilterRun& run)
        : input(addressOf(run.input)), design(addressOf(&run.design)), bands(addressOf(&run.bands)) {
        std::memcpy(&pair, &run.pair, sizeof pair);
    }

    Address input;
    Address design;
    Address bands;
    Address pair; ///< an offset
};

void call(Address function, std::initializer_list<Address> arguments) {
    alignas(16) static char stack[65536];
    char* const place = stack + sizeof stack - 64;
    std::memcpy(place, arguments.begin(), arguments.size() * sizeof(Address));
    jumpToThirtyTwoBits(function, addressOf(place));
}

/// A kernel of this build's form, which leads to the other.
template <const ThirtyTwoBitKernel& Kernel>
BlockKernel leadingTo(const char* name) {
    BlockKernel kernel;
    kernel.name = name;
    kernel.filter = [](const FilterRun& run, float* output) noexcept {
        const ThirtyTwoBitRun run32(run);
        call(Kernel.filter, {addressOf(&run32), addressOf(output)});
    };
    kernel.filterTwo = [](const FilterRun& first, float* firstOutput, const FilterRun& second,
                          float* secondOutput) noexcept {
        const ThirtyTwoBitRun first32(first);
        const ThirtyTwoBitRun second32(second);
        call(Kernel.filterTwo,
             {addressOf(&first32), addressOf(firstOutput), addressOf(&second32), addressOf(secondOutput)});
    };
    kernel.change = [](const FilterRun& before, const FilterRun& after, float* output) noexcept {
        const ThirtyTwoBitRun before32(before);
        const ThirtyTwoBitRun after32(after);
        call(Kernel.change, {addressOf(&before32), addressOf(&after32), addressOf(output)});
    };
    kernel.fadeIn = [](const FilterRun& run, float* output) noexcept {
        const ThirtyTwoBitRun run32(run);
        call(Kernel.fadeIn, {addressOf(&run32), addressOf(output)});
    };
    kernel.fadeOut = [](const FilterRun& run, float* output) noexcept {
        const ThirtyTwoBitRun run32(run);
        call(Kernel.fadeOut, {addressOf(&run32), addressOf(output)});
    };
    return kernel;
}

const BlockKernel plainKernel32 = leadingTo<thirtyTwoBitPlainKernel>("plain");
const BlockKernel sse2Kernel32 = leadingTo<thirtyTwoBitSse2Kernel>("SSE2");

/// What a kernel makes of a block and of a change.
struct Trial {
    explicit Trial(const BlockKernel& kernel) {
        for (int n = 0; n < BlockKernel::BlockSize; ++n) input[n] = static_cast<float>(n % 97 - 48) / 100;
        const FilterRun now = {input, design, bands, &BandState::currentState};
        const FilterRun next = {input, design, bands, &BandState::nextState};
        kernel.filter(now, outputs[0]);
        kernel.change(now, next, outputs[1]);
    }

    [[nodiscard]] bool isSameAs(const Trial& other) const {
        return std::memcmp(outputs, other.outputs, sizeof outputs) == 0 &&
               std::memcmp(bands, other.bands, sizeof bands) == 0;
    }

    static constexpr float Settings[ParameterCount] = {-3, 80, 400, 2500, 9000, 4, -5, 6, -2, 1, 2, 3, 1.5F};
    FilterDesign design = FilterDesign::of(Settings);
    BandState bands[BandCount] = {};
    float input[BlockKernel::BlockSize];
    float outputs[2][BlockKernel::BlockSize];
};

/// Whether the 32-bit code does here what it was written for.
bool kernelsWork() {
    const auto expected = std::make_unique<Trial>(plainKernel);
    for (const BlockKernel* kernel : availableKernels())
        if (!std::make_unique<Trial>(*kernel)->isSameAs(*expected)) {
            std::fprintf(stderr, "the kernel %s gives other results as 32-bit code\n", kernel->name);
            return false;
        }
    return true;
}

} // namespace

std::span<const BlockKernel* const> availableKernels() noexcept {
    static const BlockKernel* const list[] = {&plainKernel32, &sse2Kernel32};
    return list;
}

const BlockKernel& fastestKernel() noexcept {
    return sse2Kernel32;
}

/// The main of KernelBenchmark.cpp.
int benchmarkMain(int argumentCount, char** arguments);

namespace {

struct CommandLine {
    int count;
    char** arguments;
    int result;
};

void* runBenchmarks(void* place) {
    CommandLine& line = *static_cast<CommandLine*>(place);
    if (kernelsWork()) line.result = benchmarkMain(line.count, line.arguments);
    return nullptr;
}

} // namespace

int main(int argumentCount, char** arguments) {
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_ARENA_MAX, 1);
    CommandLine line = {argumentCount, arguments, 1};
    void* const stack =
        mmap(nullptr, StackSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_32BIT, -1, 0);
    pthread_attr_t attributes;
    pthread_t thread;
    if (stack == MAP_FAILED || pthread_attr_init(&attributes) != 0 ||
        pthread_attr_setstack(&attributes, stack, StackSize) != 0 ||
        pthread_create(&thread, &attributes, runBenchmarks, &line) != 0)
        return 1;
    pthread_join(thread, nullptr);
    return line.result;
}
