#pragma once

#include <csignal>
#include <ctime>

#include <pthread.h>

namespace eq {

/// Keeps SIGPIPE from the process while the object lives: a write to an X server that is gone raises the signal, which
/// would end the host.
class SigpipeGuard {
public:
    SigpipeGuard() noexcept {
        sigset_t waiting;
        sigpending(&waiting);
        wasPending = sigismember(&waiting, SIGPIPE) == 1;
        sigemptyset(&pipe);
        sigaddset(&pipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &pipe, &before);
    }
    ~SigpipeGuard() {
        const timespec none = {};
        // A signal that was raised meanwhile is removed. One of the host's own stays.
        if (!wasPending) sigtimedwait(&pipe, nullptr, &none);
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    SigpipeGuard(const SigpipeGuard&) = delete;
    SigpipeGuard& operator=(const SigpipeGuard&) = delete;

private:
    bool wasPending = false;
    sigset_t pipe{};
    sigset_t before{};
};

} // namespace eq
