#pragma once

#include <array>
#include <string>
#include <string_view>

/// The effect's 13 parameters: their order, their ranges, and the way between a value that a user means and the
/// normalised value that the effect takes. 0.0 is the top of every range and 1.0 its bottom.
namespace tool {

inline constexpr int BandCount = 4;
inline constexpr int ParameterCount = 1 + 3 * BandCount;

/// The rate for which the effect designs its filters, whatever the rate of the sound.
inline constexpr double DesignRate = 44100.0;

/// What the effect takes for each parameter.
using NormalisedValues = std::array<float, ParameterCount>;

/// What a parameter measures. A band's three parameters stand a band count apart from each other.
enum class Quantity { Volume, Frequency, Gain, Q };

struct Scale {
    std::string_view unit; ///< empty for Q
    double top;
    double bottom;
    bool logarithmic;
};

[[nodiscard]] const Scale& scaleOf(Quantity quantity);

/// `index` is 0 to 12.
[[nodiscard]] Quantity quantityOf(int index);

/// The index of a band's parameter; `band` counts from 1. The volume belongs to no band.
[[nodiscard]] int indexOf(Quantity quantity, int band);

/// The band of a parameter, counted from 1; 0 for the volume.
[[nodiscard]] int bandOf(int index);

/// Where a parameter stands in a new instance of the effect, in its unit.
[[nodiscard]] double defaultValue(int index);

/// "volume", "band1.freq", "band1.gain", "band1.q" and so on.
[[nodiscard]] std::string nameOf(int index);

/// `value` in the parameter's unit, limited to its range.
[[nodiscard]] float toNormalised(Quantity quantity, double value);
[[nodiscard]] double fromNormalised(Quantity quantity, double normalised);

/// "-10 to 10 dB"
[[nodiscard]] std::string rangeText(Quantity quantity);

/// The way between the frequencies that a user hears and those that the effect is told, at one sampling rate.
class FrequencyMap {
public:
    FrequencyMap(int sampleRate, bool corrected);

    /// The frequency to ask the effect for.
    [[nodiscard]] double toNominal(double wanted) const { return m_corrected ? wanted / m_stretch : wanted; }
    /// The frequency at which the effect lands when asked for `nominal`.
    [[nodiscard]] double landing(double nominal) const { return nominal * m_stretch; }

    [[nodiscard]] bool reaches(double wanted) const;
    /// "21.77 to 21768.70 Hz", with ends that are inside.
    [[nodiscard]] std::string reachText() const;

    [[nodiscard]] int sampleRate() const { return m_sampleRate; }
    [[nodiscard]] bool isCorrected() const { return m_corrected; }
    [[nodiscard]] bool isAtDesignRate() const { return m_stretch == 1.0; }

private:
    int m_sampleRate;
    bool m_corrected;
    double m_stretch;
};

} // namespace tool
