#pragma once

#include <optional>
#include <string_view>

#include <sndfile.h>

namespace eq {

/// The highest and the lowest sample of a sound. NaNs have no level.
struct SamplePeaks {
    float highest = 0.0F;
    float lowest = 0.0F;

    void add(const float* samples, sf_count_t count);
    [[nodiscard]] double level() const;
};

/// The gain after the effect that brings the highest sample of a file to a level.
class PeakGain {
public:
    /// "-1", "-1 dB", from -100 to 0. Throws UsageError.
    void setLevel(std::string_view decibels);
    /// Only lowers sound that would clip.
    void setHeadroom() { m_isHeadroom = true; }

    /// True if a gain is wanted, for which the file must be read twice.
    [[nodiscard]] bool isWanted() const { return m_level || m_isHeadroom; }

    /// Returns the factor for a sound with these peaks; 1 for silence. No sample clips in `format`, with or without the
    /// noise of the dither. Throws FileError for infinite samples.
    [[nodiscard]] double gainFor(const SamplePeaks& peaks, int format, bool isDithered) const;

private:
    std::optional<double> m_level;
    bool m_isHeadroom = false;
};

} // namespace eq
