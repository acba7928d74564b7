#include "tools/equalize/BlockQueue.h"

#include <utility>

namespace eq {

namespace {

constexpr std::size_t BlockCount = 4;

} // namespace

BlockQueue::BlockQueue(std::size_t samples) : m_blocks(BlockCount) {
    for (SoundBlock& block : m_blocks) block.samples.resize(samples);
}

SoundBlock* BlockQueue::blockToFill() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_isStopped || m_sent - m_released < m_blocks.size(); });
    return m_isStopped ? nullptr : &at(m_sent);
}

void BlockQueue::send() {
    const std::lock_guard lock(m_mutex);
    ++m_sent;
    m_changed.notify_all();
}

void BlockQueue::finish(std::exception_ptr failure) {
    const std::lock_guard lock(m_mutex);
    m_isFinished = true;
    m_failure = std::move(failure);
    m_changed.notify_all();
}

SoundBlock* BlockQueue::nextBlock() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_isFinished || m_sent != m_released; });
    if (m_sent != m_released) return &at(m_released);
    if (m_failure) std::rethrow_exception(m_failure);
    return nullptr;
}

void BlockQueue::release() {
    const std::lock_guard lock(m_mutex);
    ++m_released;
    m_changed.notify_all();
}

void BlockQueue::stop() {
    const std::lock_guard lock(m_mutex);
    m_isStopped = true;
    m_changed.notify_all();
}

} // namespace eq
