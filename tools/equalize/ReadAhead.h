#pragma once

#include "tools/equalize/BlockQueue.h"
#include "tools/equalize/sound/AudioReader.h"

#include <thread>

namespace eq {

/// Reads and decodes sound in a separate thread, some blocks before `read` needs them. No other code may use the reader
/// while this object exists.
class ReadAhead {
public:
    /// `frames` is the number of frames in each block.
    ReadAhead(AudioReader& reader, sf_count_t frames);
    ~ReadAhead();
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    /// Copies the next block, and returns its number of frames. Only the end of the sound makes a block shorter. Throws
    /// the exceptions of the reader.
    [[nodiscard]] sf_count_t read(float* interleaved);

private:
    void readAll() noexcept;

    AudioReader& m_reader;
    sf_count_t m_blockFrames;
    BlockQueue m_queue;
    std::jthread m_thread;
};

} // namespace eq
