#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <vector>

#include <sndfile.h>

namespace eq {

/// A block of interleaved sound that one thread passes to another.
struct SoundBlock {
    std::vector<float> samples;
    sf_count_t frames = 0;
};

/// A queue that passes blocks of sound in order from one thread, the sender, to another thread, the receiver.
class BlockQueue {
public:
    /// `samples` is the number of samples in each block.
    explicit BlockQueue(std::size_t samples);

    /// Returns the block that the sender fills next. Waits until a block is free. Returns null after `stop`.
    [[nodiscard]] SoundBlock* blockToFill();
    /// Sends the block that `blockToFill` returned last.
    void send();
    /// Marks the end of the sound. `failure` is the reason if the sound ends early.
    void finish(std::exception_ptr failure = nullptr);

    /// Returns the oldest block that was sent and not released. Waits until there is one. After the last block, returns
    /// null, or throws the failure that `finish` received.
    [[nodiscard]] SoundBlock* nextBlock();
    /// Frees the block that `nextBlock` returned last, so that the sender can fill it again.
    void release();
    /// Stops the sender: `blockToFill` returns null from now on. The receiver calls this function.
    void stop();

private:
    [[nodiscard]] SoundBlock& at(std::size_t number) { return m_blocks[number % m_blocks.size()]; }

    std::vector<SoundBlock> m_blocks;
    std::mutex m_mutex; ///< guards all members below
    std::condition_variable m_changed;
    std::size_t m_sent = 0;
    std::size_t m_released = 0;
    bool m_isFinished = false;
    bool m_isStopped = false;
    std::exception_ptr m_failure;
};

} // namespace eq
