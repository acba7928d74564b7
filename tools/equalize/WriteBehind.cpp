#include "tools/equalize/WriteBehind.h"

#include <algorithm>

namespace eq {

WriteBehind::WriteBehind(const SoundSink& sink, int channels, sf_count_t frames)
    : m_sink(sink),
      m_channels(channels),
      m_queue(static_cast<std::size_t>(frames * channels)),
      m_thread([this] { writeAll(); }) {}

WriteBehind::~WriteBehind() {
    m_queue.finish();
}

void WriteBehind::writeAll() noexcept {
    try {
        while (SoundBlock* const block = m_queue.nextBlock()) {
            m_sink(block->samples.data(), block->frames);
            m_queue.release();
        }
    } catch (...) {
        m_failure = std::current_exception();
        m_queue.stop();
    }
}

void WriteBehind::write(const float* interleaved, sf_count_t frames) {
    SoundBlock* const block = m_queue.blockToFill();
    if (block == nullptr) std::rethrow_exception(m_failure);
    std::copy_n(interleaved, frames * m_channels, block->samples.begin());
    block->frames = frames;
    m_queue.send();
}

void WriteBehind::finish() {
    m_queue.finish();
    m_thread.join();
    if (m_failure) std::rethrow_exception(m_failure);
}

} // namespace eq
