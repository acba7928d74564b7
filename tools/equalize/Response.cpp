#include "tools/equalize/Response.h"

#include "tools/equalize/EffectSeries.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace eq {
namespace {

// The impulse response of the lowest and narrowest band falls by 160 dB within this number of samples.
constexpr int LongestResponse = 1 << 18;
constexpr float Negligible = 1e-10F;

} // namespace

Response::Response(const EffectLibrary& library, const std::vector<NormalisedValues>& values, int sampleRate)
    : m_sampleRate(sampleRate) {
    Settings::Series settings(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) std::ranges::copy(values[i], settings[i].begin());
    EffectSeries effect(library, settings, sampleRate);
    // The delay at the start changes only phases, so it need not be removed.
    m_samples.resize(static_cast<std::size_t>(effect.delay()) + LongestResponse);
    std::vector<float> other(m_samples.size());
    m_samples.front() = 1.0F;
    effect.process(m_samples.data(), other.data(), static_cast<int>(m_samples.size()));
    const auto counts = [](float sample) { return std::fabs(sample) > Negligible; };
    m_samples.erase(std::find_if(m_samples.rbegin(), m_samples.rend(), counts).base(), m_samples.end());
}

double Response::decibelsAt(double frequency) const {
    const std::complex<double> back = std::polar(1.0, -2.0 * std::numbers::pi * frequency / m_sampleRate);
    // Multiply real and imaginary parts separately, because std::complex would check each product for infinities.
    double real = 0.0;
    double imaginary = 0.0;
    for (auto sample = m_samples.rbegin(); sample != m_samples.rend(); ++sample) {
        const double turned = real * back.real() - imaginary * back.imag();
        imaginary = real * back.imag() + imaginary * back.real();
        real = turned + static_cast<double>(*sample);
    }
    return 20.0 * std::log10(std::hypot(real, imaginary));
}

} // namespace eq
