#include "tools/equalize/settings/Bell.h"

#include "tools/equalize/settings/Biquad.h"

#include <cmath>
#include <numbers>

namespace eq {
namespace {

constexpr double EffectRate = 44100.0;

double widthFactor(double gain) {
    return std::pow(10.0, -std::fabs(gain) / 40.0);
}

} // namespace

ValueRange bellFrequencyRange(int sampleRate) {
    const double stretch = sampleRate / EffectRate;
    return {FrequencyRange.lowest * stretch, FrequencyRange.highest * stretch};
}

double bellQ(double angle, double gain, double biquadQ) {
    return angle / 2.0 / std::atan(std::sin(angle) / (2.0 * biquadQ) * widthFactor(gain));
}

double biquadQ(double angle, double gain, double bellQ) {
    return std::sin(angle) * widthFactor(gain) / (2.0 * std::tan(angle / 2.0 / bellQ));
}

double angleOf(double frequency, int sampleRate) {
    return 2.0 * std::numbers::pi * frequency / sampleRate;
}

double decibelsOf(const Bell& bell, double frequency, int sampleRate) {
    const double angle = angleOf(bell.frequency, sampleRate);
    const double alpha = Biquad::alphaOfQ(angle, biquadQ(angle, bell.gain, bell.q));
    return Biquad::peak(angle, bell.gain, alpha).decibelsAt(angleOf(frequency, sampleRate));
}

} // namespace eq
