#pragma once

#include "tools/equalize/EffectSeries.h"

#include <vector>

namespace eq {

/// Any number of channels, equalized alike: a series of effects for every two of them. The last of an odd
/// number has a series for itself, whose second channel is silent.
class MultichannelEffect {
public:
    /// `blockFrames` is the most that the effect is given at a time.
    MultichannelEffect(const EffectLibrary& library, const Settings::Series& settings, int channels, int sampleRate,
                       int blockFrames);

    [[nodiscard]] int channels() const { return m_channels; }
    [[nodiscard]] int delay() const { return m_effects.front().delay(); }

    /// Equalizes in place.
    void process(float* interleaved, int frames) noexcept;

private:
    void processBlock(float* interleaved, int frames) noexcept;
    [[nodiscard]] float* channel(int index) {
        return m_planes.data() + static_cast<std::ptrdiff_t>(index) * m_blockFrames;
    }

    int m_channels;
    int m_blockFrames;
    std::vector<EffectSeries> m_effects;
    std::vector<float> m_planes; ///< channel after channel, `m_blockFrames` each
};

} // namespace eq
