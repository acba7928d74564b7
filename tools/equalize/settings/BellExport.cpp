#include "tools/equalize/settings/BellExport.h"

#include "tools/common/Text.h"
#include "tools/equalize/settings/RoundedText.h"

#include <cmath>

namespace eq {
namespace {

/// The numbers of a biquad peak filter, as text.
struct PeakText {
    std::string frequency;
    std::string gain;
    std::string q;
};

PeakText peakText(const Bell& bell, int sampleRate) {
    const double stretch = bellFrequencyRange(sampleRate).lowest / FrequencyRange.lowest;
    const auto frequencyP = [&](double value) { return normalisedOf(ParameterKind::Frequency, value / stretch); };
    const auto sameFrequency = [&](double value) { return frequencyP(value) == frequencyP(bell.frequency); };
    const auto sameGain = [&](double value) {
        return normalisedOf(ParameterKind::Gain, value) == normalisedOf(ParameterKind::Gain, bell.gain);
    };
    PeakText text{roundedText(bell.frequency, sameFrequency), roundedText(bell.gain, sameGain), ""};
    // Q depends on the frequency and the gain, so compute it from their rounded values.
    const double angle = angleOf(*parseNumber(text.frequency), sampleRate);
    const double gain = *parseNumber(text.gain);
    const auto sameQ = [&](double value) {
        return normalisedOf(ParameterKind::Q, bellQ(angle, gain, value)) == normalisedOf(ParameterKind::Q, bell.q);
    };
    text.q = roundedText(biquadQ(angle, gain, bell.q), sameQ);
    return text;
}

std::string volumeText(double volume) {
    return roundedText(volume, [volume](double value) {
        return normalisedOf(ParameterKind::Volume, value) == normalisedOf(ParameterKind::Volume, volume);
    });
}

} // namespace

std::string BellExport::equalizerApoText() const {
    std::string text =
        "# Exact at a sampling rate of " + std::to_string(sampleRate) + " Hz.\nPreamp: " + volumeText(volume) + " dB\n";
    for (std::size_t i = 0; i < bells.size(); ++i) {
        const PeakText peak = peakText(bells[i], sampleRate);
        text += "Filter " + std::to_string(i + 1) + ": ON PK Fc " + peak.frequency + " Hz Gain " + peak.gain +
                " dB Q " + peak.q + "\n";
    }
    return text;
}

//  volume (mixer with one input) --> band1 --> band2 ...
std::string BellExport::pipewireText() const {
    const std::string indent(20, ' ');
    std::string nodes = indent + "{ type = builtin name = volume label = mixer control = { \"Gain 1\" = " +
                        shortest(static_cast<float>(std::pow(10.0, volume / 20.0))) + " } }\n";
    std::string links;
    std::string last = "volume";
    for (std::size_t i = 0; i < bells.size(); ++i) {
        const PeakText peak = peakText(bells[i], sampleRate);
        const std::string name = "band" + std::to_string(i + 1);
        nodes.append(indent)
            .append("{ type = builtin name = " + name + " label = bq_peaking control = { \"Freq\" = ")
            .append(peak.frequency)
            .append(" \"Q\" = ")
            .append(peak.q)
            .append(" \"Gain\" = ")
            .append(peak.gain)
            .append(" } }\n");
        links.append(indent).append("{ output = \"" + last + ":Out\" input = \"").append(name).append(":In\" }\n");
        last = name;
    }
    return "# Exact at a sampling rate of " + std::to_string(sampleRate) +
           " Hz. In ~/.config/pipewire/pipewire.conf.d this file adds a sink.\n"
           "context.modules = [\n"
           "    { name = libpipewire-module-filter-chain\n"
           "        args = {\n"
           "            node.description = \"Parametric Equalizer\"\n"
           "            media.name = \"Parametric Equalizer\"\n"
           "            filter.graph = {\n"
           "                nodes = [\n" +
           nodes +
           "                ]\n"
           "                links = [\n" +
           links +
           "                ]\n"
           "                inputs = [ \"volume:In 1\" ]\n"
           "                outputs = [ \"" +
           last +
           ":Out\" ]\n"
           "            }\n"
           "            audio.channels = 2\n"
           "            audio.position = [ FL FR ]\n"
           "            capture.props = {\n"
           "                node.name = \"effect_input.parametric_equalizer\"\n"
           "                media.class = Audio/Sink\n"
           "            }\n"
           "            playback.props = {\n"
           "                node.name = \"effect_output.parametric_equalizer\"\n"
           "                node.passive = true\n"
           "            }\n"
           "        }\n"
           "    }\n"
           "]\n";
}

} // namespace eq
