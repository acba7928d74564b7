#include "tools/equalize/MultichannelEffect.h"

#include <algorithm>

namespace eq {

namespace {

// The compiler vectorises these loops for two channels, because `__restrict` states that the arrays do not overlap.
void split(const float* __restrict interleaved, float* __restrict left, float* __restrict right, int frames) noexcept {
    for (int i = 0; i < frames; ++i) {
        left[i] = interleaved[2 * i];
        right[i] = interleaved[2 * i + 1];
    }
}

void join(const float* __restrict left, const float* __restrict right, float* __restrict interleaved,
          int frames) noexcept {
    for (int i = 0; i < frames; ++i) {
        interleaved[2 * i] = left[i];
        interleaved[2 * i + 1] = right[i];
    }
}

} // namespace

MultichannelEffect::MultichannelEffect(const EffectLibrary& library, const Settings::Series& settings, int channels,
                                       int sampleRate, int blockFrames)
    : m_channels(channels), m_blockFrames(blockFrames) {
    const int pairs = (channels + 1) / 2;
    for (int pair = 0; pair < pairs; ++pair) m_effects.emplace_back(library, settings, sampleRate);
    m_planes.resize(static_cast<std::size_t>(pairs) * 2 * static_cast<std::size_t>(blockFrames));
}

void MultichannelEffect::process(float* interleaved, int frames) noexcept {
    for (int done = 0; done < frames; done += m_blockFrames)
        processBlock(interleaved + static_cast<std::ptrdiff_t>(done) * m_channels,
                     std::min(m_blockFrames, frames - done));
}

void MultichannelEffect::processBlock(float* interleaved, int frames) noexcept {
    if (m_channels == 2) {
        split(interleaved, channel(0), channel(1), frames);
        m_effects.front().process(channel(0), channel(1), frames);
        join(channel(0), channel(1), interleaved, frames);
        return;
    }
    for (int c = 0; c < m_channels; ++c) {
        float* const plane = channel(c);
        for (int i = 0; i < frames; ++i) plane[i] = interleaved[static_cast<std::ptrdiff_t>(i) * m_channels + c];
    }
    for (std::size_t pair = 0; pair < m_effects.size(); ++pair) {
        const int first = static_cast<int>(pair) * 2;
        m_effects[pair].process(channel(first), channel(first + 1), frames);
    }
    for (int c = 0; c < m_channels; ++c) {
        const float* const plane = channel(c);
        for (int i = 0; i < frames; ++i) interleaved[static_cast<std::ptrdiff_t>(i) * m_channels + c] = plane[i];
    }
}

} // namespace eq
