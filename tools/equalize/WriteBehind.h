#pragma once

#include "tools/equalize/BlockQueue.h"
#include "tools/equalize/Equalizing.h"

#include <exception>
#include <thread>

namespace eq {

/// Calls a sink on a thread of its own, some blocks after the sound was given.
class WriteBehind {
public:
    /// `frames` is the most that `write` may be given at a time.
    WriteBehind(const SoundSink& sink, int channels, sf_count_t frames);
    ~WriteBehind();
    WriteBehind(const WriteBehind&) = delete;
    WriteBehind& operator=(const WriteBehind&) = delete;

    /// Throws what the sink threw for an earlier block.
    void write(const float* interleaved, sf_count_t frames);
    /// Waits until the sink has all sound. Throws what the sink threw.
    void finish();

private:
    void writeAll() noexcept;

    const SoundSink& m_sink;
    int m_channels;
    BlockQueue m_queue;
    std::exception_ptr m_failure; ///< written before the queue is stopped, and read afterwards
    std::jthread m_thread;
};

} // namespace eq
