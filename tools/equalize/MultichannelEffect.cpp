#include "tools/equalize/MultichannelEffect.h"

namespace eq {

MultichannelEffect::MultichannelEffect(const EffectLibrary& library, const Settings::Series& settings, int channels,
                                       int sampleRate, int blockFrames)
    : m_channels(channels), m_blockFrames(blockFrames) {
    const int pairs = (channels + 1) / 2;
    for (int pair = 0; pair < pairs; ++pair) m_effects.emplace_back(library, settings, sampleRate);
    m_planes.resize(static_cast<std::size_t>(pairs) * 2 * static_cast<std::size_t>(blockFrames));
}

void MultichannelEffect::process(float* interleaved, int frames) noexcept {
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
