#include "plugin/base/AEffect.h"

#include "tests/support/HostedEffect.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/ScriptedHost.h"
#ifdef EQ_LV2_LIBRARY
#include "tests/support/Lv2Host.h"
#endif

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <dlfcn.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <pthread.h>
#include <string>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <thread>
#include <vector>

// The library must not allocate, lock or wait while it processes audio. This program replaces the C library's functions
// for memory and locks, refuses system calls of the audio thread, and counts all of these calls.

using namespace eq;

namespace {

/// True while this thread is in a call that processes audio.
thread_local bool processing = false;
std::atomic<int> allocationsSeen = 0, locksSeen = 0, systemCallsSeen = 0;

void note(std::atomic<int>& seen) {
    if (processing) ++seen;
}

/// Returns the numbers of allocations, of locks and of system calls since the last call of this function.
std::array<int, 3> countedCalls() {
    return {allocationsSeen.exchange(0), locksSeen.exchange(0), systemCallsSeen.exchange(0)};
}

/// Counts a system call that the kernel refused while this thread processes audio. Other refusals, for example at the
/// end of the thread, do no harm.
void onSystemCall(int) {
    note(systemCallsSeen);
}

/// Lets the kernel refuse all system calls of this thread that could wait, or that allocate or free memory. The refusal
/// lasts until the thread ends.
void refuseSystemCalls() {
    std::signal(SIGSYS, onSystemCall);
    constexpr unsigned Refused[] = {
        SYS_futex, SYS_mmap, SYS_munmap, SYS_mremap, SYS_brk,   SYS_read,      SYS_write,           SYS_openat,
        SYS_close, SYS_poll, SYS_ppoll,  SYS_select, SYS_ioctl, SYS_nanosleep, SYS_clock_nanosleep, SYS_sched_yield};
    std::vector<sock_filter> program = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
    for (const unsigned number : Refused) {
        program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number, 0, 1));
        program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRAP));
    }
    program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    const sock_fprog filter = {static_cast<unsigned short>(program.size()), program.data()};
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    ASSERT_EQ(prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter), 0);
}

} // namespace

// All loaded libraries call these functions of the program instead of the functions of the C library.
extern "C" {

void* __libc_malloc(std::size_t size); // NOLINT(bugprone-reserved-identifier): a name of the C library
void __libc_free(void* block);         // NOLINT(bugprone-reserved-identifier)

void* malloc(std::size_t size) {
    note(allocationsSeen);
    return __libc_malloc(size);
}
void free(void* block) {
    if (block) note(allocationsSeen);
    __libc_free(block);
}
int pthread_mutex_lock(pthread_mutex_t* mutex) {
    static const auto real = reinterpret_cast<decltype(&pthread_mutex_lock)>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
    note(locksSeen);
    return real(mutex);
}
}

namespace {

TEST(RealTimeSafety, ProcessingNeitherAllocatesNorLocksNorCallsTheKernel) {
    const ScriptedHost host(2400);
    const LoadedLibrary library(EQ_LIBRARY_PATH);
    const HostedEffect effect(library.find<EffectMainProc>("main")(ScriptedHost::callback));
    effect.dispatch(effSetBlockSize, nullptr, 0, 8192);

    AEffect* const record = effect.record;
    std::atomic<bool> done = false;
    std::thread audio([&] {
        refuseSystemCalls();
        std::vector<float> samples(std::size_t{4} * 8192, 0.5f);
        float* channels[] = {&samples[0], &samples[8192], &samples[16384], &samples[24576]};
        for (int i = 0; i < 3000; ++i) {
            const int32 frames = i * 37 % 8193;
            processing = true;
            (i % 2 == 0 ? record->processReplacing : record->process)(record, channels, channels + 2, frames);
            processing = false;
        }
        done = true;
    });
    for (int i = 0; !done; ++i) effect.set(i % 13, static_cast<float>(i % 101) / 100.0f);
    audio.join();
    EXPECT_EQ(countedCalls(), (std::array{0, 0, 0}));
}

#ifdef EQ_LV2_LIBRARY
TEST(RealTimeSafety, TheLv2PlugInNeitherAllocatesNorLocksNorCallsTheKernel) {
    const LoadedLibrary library(EQ_LV2_LIBRARY);
    for (const std::uint32_t channels : {1U, 2U}) {
        Lv2Instance instance(library, channels, 48000);
        std::vector<Samples> sound(channels, Samples(8192, 0.5F));
        std::mt19937 random(1);
        std::thread([&] {
            refuseSystemCalls();
            for (std::size_t i = 0; i < 3000; ++i) {
                // The first call after an activation also processes two blocks of silence.
                if (i % 100 == 0) instance.activate();
                instance.values = randomValues(random);
                instance.enabled = i % 7 < 4 ? 1 : 0;
                processing = true;
                instance.run(sound, 0, i * 37 % 8193);
                processing = false;
            }
        }).join();
    }
    EXPECT_EQ(countedCalls(), (std::array{0, 0, 0}));
}
#endif

TEST(RealTimeSafety, IsCheckedByCountersThatDetectViolations) {
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    std::thread([&mutex] {
        refuseSystemCalls();
        processing = true;
        delete new std::string(1000, 'x');
        pthread_mutex_lock(&mutex);
        sched_yield();
        processing = false;
    }).join();
    const auto [allocations, locks, systemCalls] = countedCalls();
    EXPECT_TRUE(allocations >= 2 && locks == 1 && systemCalls == 1);
}

} // namespace
