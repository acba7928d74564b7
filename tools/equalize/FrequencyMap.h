#pragma once

#include <string>

namespace eq {

/// The sampling rate in Hz for which the effect designs its filters. The rate of the sound does not change it.
inline constexpr double DesignRate = 44100.0;

/// Converts between the frequencies that a user hears and the frequencies that the effect receives, at one sampling
/// rate.
class FrequencyMap {
public:
    FrequencyMap(int sampleRate, bool corrected);

    /// Returns the frequency that the effect must receive for a wanted frequency.
    [[nodiscard]] double toNominal(double wanted) const { return m_corrected ? wanted / m_stretch : wanted; }
    /// Returns the frequency that a user hears when the effect receives `nominal`.
    [[nodiscard]] double landing(double nominal) const { return nominal * m_stretch; }

    [[nodiscard]] bool reaches(double wanted) const;
    /// Returns the range of wanted frequencies as text: "21.77 to 21768.70 Hz". Both ends are rounded into the range.
    [[nodiscard]] std::string reachText() const;

    /// Returns the range of heard frequencies as text. It differs from `reachText` only without the correction.
    [[nodiscard]] std::string landingText() const;

    [[nodiscard]] int sampleRate() const { return m_sampleRate; }
    [[nodiscard]] bool isCorrected() const { return m_corrected; }
    [[nodiscard]] bool isAtDesignRate() const { return m_stretch == 1.0; }

private:
    int m_sampleRate;
    bool m_corrected;
    double m_stretch;
};

} // namespace eq
