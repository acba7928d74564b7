#pragma once

#include <optional>
#include <string_view>

#include <sndfile.h>

namespace eq {

/// The highest and the lowest sample of a sound. NaNs are ignored.
struct SamplePeaks {
    float highest = 0.0F;
    float lowest = 0.0F;

    void add(const float* samples, sf_count_t count);
    [[nodiscard]] double level() const;
};

/// The gain after the effect that --normalize or --headroom asks for.
class PeakGain {
public:
    /// Sets the level of the highest sample, such as "-1" or "-1 dB", from -100 to 0 dB. Throws UsageError.
    void setLevel(std::string_view decibels);
    /// Selects a gain that lowers sound that would clip, and leaves all other sound unchanged.
    void setHeadroom() { m_isHeadroom = true; }

    /// Returns true if a gain is wanted. The file must then be read twice.
    [[nodiscard]] bool isWanted() const { return m_level || m_isHeadroom; }

    /// Returns the gain as a factor for a sound with these peaks; 1 for silence. With this gain, no sample clips in
    /// `format`, even with the noise of the dither. Throws FileError for infinite samples.
    [[nodiscard]] double gainFor(const SamplePeaks& peaks, int format, bool isDithered) const;

private:
    std::optional<double> m_level;
    bool m_isHeadroom = false;
};

} // namespace eq
