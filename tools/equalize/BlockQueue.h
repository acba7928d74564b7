#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <vector>

#include <sndfile.h>

namespace eq {

/// Interleaved sound on its way from one thread to another.
struct SoundBlock {
    std::vector<float> samples;
    sf_count_t frames = 0;
};

/// Hands a few blocks of sound from one thread, the sender, to another, the receiver, in order.
class BlockQueue {
public:
    /// `samples` is the size of each block.
    explicit BlockQueue(std::size_t samples);

    /// Returns the block to fill next. Waits until one is free. Returns null after `stop`.
    [[nodiscard]] SoundBlock* blockToFill();
    /// Sends the block that `blockToFill` returned last.
    void send();
    /// Ends the sound, or says why it ends early.
    void finish(std::exception_ptr failure = nullptr);

    /// Returns the oldest block that was sent. Waits for it. Returns null after the last one, or throws the failure
    /// that the sender named.
    [[nodiscard]] SoundBlock* nextBlock();
    /// Makes the block that `nextBlock` returned last free.
    void release();
    /// The receiver takes no more blocks.
    void stop();

private:
    [[nodiscard]] SoundBlock& at(std::size_t number) { return m_blocks[number % m_blocks.size()]; }

    std::vector<SoundBlock> m_blocks;
    std::mutex m_mutex; ///< guards what follows
    std::condition_variable m_changed;
    std::size_t m_sent = 0;
    std::size_t m_released = 0;
    bool m_isFinished = false;
    bool m_isStopped = false;
    std::exception_ptr m_failure;
};

} // namespace eq
