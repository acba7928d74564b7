#include "tools/equalize/Parameters.h"

#include "tools/equalize/Text.h"

#include <algorithm>
#include <cmath>

namespace tool {
namespace {

// In the order of Quantity.
constexpr std::array<Scale, 4> Scales = {{
    {"dB", 12.0, -12.0, false},
    {"Hz", 20000.0, 20.0, true},
    {"dB", 10.0, -10.0, false},
    {"", 10.0, 1.0, false},
}};

constexpr std::array<std::string_view, 4> Names = {"volume", "freq", "gain", "q"};

} // namespace

const Scale& scaleOf(Quantity quantity) {
    return Scales[static_cast<std::size_t>(quantity)];
}

Quantity quantityOf(int index) {
    return static_cast<Quantity>((index + BandCount - 1) / BandCount);
}

int indexOf(Quantity quantity, int band) {
    return (static_cast<int>(quantity) - 1) * BandCount + band;
}

int bandOf(int index) {
    return index == 0 ? 0 : (index - 1) % BandCount + 1;
}

double defaultValue(int index) {
    switch (quantityOf(index)) {
    case Quantity::Frequency:
        return 20.0 * std::pow(10.0, bandOf(index) - 1);
    case Quantity::Q:
        return 5.0;
    default:
        return 0.0;
    }
}

std::string nameOf(int index) {
    const std::string name(Names[static_cast<std::size_t>(quantityOf(index))]);
    return index == 0 ? name : "band" + std::to_string(bandOf(index)) + "." + name;
}

float toNormalised(Quantity quantity, double value) {
    const Scale& scale = scaleOf(quantity);
    const double normalised = scale.logarithmic ? std::log(scale.top / value) / std::log(scale.top / scale.bottom)
                                                : (scale.top - value) / (scale.top - scale.bottom);
    return static_cast<float>(std::clamp(normalised, 0.0, 1.0));
}

double fromNormalised(Quantity quantity, double normalised) {
    const Scale& scale = scaleOf(quantity);
    if (scale.logarithmic) return scale.top * std::pow(scale.bottom / scale.top, normalised);
    return scale.top - normalised * (scale.top - scale.bottom);
}

std::string rangeText(Quantity quantity) {
    const Scale& scale = scaleOf(quantity);
    std::string text = fixed(scale.bottom, 0) + " to " + fixed(scale.top, 0);
    if (!scale.unit.empty()) text.append(" ").append(scale.unit);
    return text;
}

FrequencyMap::FrequencyMap(int sampleRate, bool corrected)
    : m_sampleRate(sampleRate), m_corrected(corrected), m_stretch(sampleRate / DesignRate) {}

bool FrequencyMap::reaches(double wanted) const {
    // An end of the range stays inside when the scaling rounds it.
    constexpr double Slack = 1e-12;
    const Scale& scale = scaleOf(Quantity::Frequency);
    const double nominal = toNominal(wanted);
    return nominal >= scale.bottom * (1.0 - Slack) && nominal <= scale.top * (1.0 + Slack);
}

std::string FrequencyMap::reachText() const {
    const Scale& scale = scaleOf(Quantity::Frequency);
    if (!m_corrected || isAtDesignRate()) return rangeText(Quantity::Frequency);
    return fixed(std::ceil(scale.bottom * m_stretch * 100.0) / 100.0, 2) + " to " +
           fixed(std::floor(scale.top * m_stretch * 100.0) / 100.0, 2) + " Hz";
}

} // namespace tool
