#pragma once

#include "tools/equalize/BlockQueue.h"
#include "tools/equalize/Equalizing.h"

#include <exception>
#include <thread>

namespace eq {

/// Calls a sink in a separate thread, some blocks after `write` has received the sound.
class WriteBehind {
public:
    /// `frames` is the largest number of frames in one call of `write`. `sink` must outlive the object.
    WriteBehind(const SoundSink& sink, int channels, sf_count_t frames);
    ~WriteBehind();
    WriteBehind(const WriteBehind&) = delete;
    WriteBehind& operator=(const WriteBehind&) = delete;

    /// Queues a copy of the sound. Throws the exception that the sink threw for an earlier block.
    void write(const float* interleaved, sf_count_t frames);
    /// Waits until the sink has received all sound. Throws the exception of the sink.
    void finish();

private:
    void writeAll() noexcept;

    const SoundSink& m_sink;
    int m_channels;
    BlockQueue m_queue;
    std::exception_ptr m_failure; ///< written before `m_queue.stop()`, and read afterwards
    std::jthread m_thread;
};

} // namespace eq
