#include "tools/equalize/ReadAhead.h"

#include <algorithm>
#include <exception>

namespace eq {

ReadAhead::ReadAhead(AudioReader& reader, sf_count_t frames)
    : m_reader(reader),
      m_blockFrames(frames),
      m_queue(static_cast<std::size_t>(frames * reader.info().channels)),
      m_thread([this] { readAll(); }) {}

ReadAhead::~ReadAhead() {
    m_queue.stop();
}

void ReadAhead::readAll() noexcept {
    try {
        while (SoundBlock* const block = m_queue.blockToFill()) {
            block->frames = m_reader.read(block->samples.data(), m_blockFrames);
            const bool isLast = block->frames < m_blockFrames;
            m_queue.send();
            if (isLast) break;
        }
        m_queue.finish();
    } catch (...) {
        m_queue.finish(std::current_exception());
    }
}

sf_count_t ReadAhead::read(float* interleaved) {
    const SoundBlock* const block = m_queue.nextBlock();
    if (block == nullptr) return 0;
    const sf_count_t frames = block->frames;
    std::copy_n(block->samples.begin(), frames * m_reader.info().channels, interleaved);
    m_queue.release();
    return frames;
}

} // namespace eq
