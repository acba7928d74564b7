#pragma once

#include <csignal>
#include <ctime>

#include <pthread.h>

namespace eq {

/// Blocks SIGPIPE in the calling thread while the object exists. A write to a lost X server raises this signal, which
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
        // Remove a signal that was raised meanwhile. A signal that was pending before belongs to the host, and stays.
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
