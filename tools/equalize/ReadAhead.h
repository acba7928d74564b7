#pragma once

#include "tools/equalize/BlockQueue.h"
#include "tools/equalize/sound/AudioReader.h"

#include <thread>

namespace eq {

/// Reads and decodes sound on a thread of its own, some blocks ahead. Only this object uses the reader until it ends.
class ReadAhead {
public:
    /// `frames` is the size of each block.
    ReadAhead(AudioReader& reader, sf_count_t frames);
    ~ReadAhead();
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    /// Reads one block, which is shorter only at the end of the sound. Throws what the reader throws.
    [[nodiscard]] sf_count_t read(float* interleaved);

private:
    void readAll() noexcept;

    AudioReader& m_reader;
    sf_count_t m_blockFrames;
    BlockQueue m_queue;
    std::jthread m_thread;
};

} // namespace eq
