#include "lv2/Lv2Equalizer.h"

#include "engine/ChannelPair.h"
#include "parameters/ParameterTable.h"

#include <algorithm>
#include <bit>

namespace eq::lv2 {

namespace {

constexpr int BlockSize = FourBandEqualizer::BlockSize;
constexpr float Silence[BlockSize] = {};

/// Returns the bits of the values, for comparisons. A NaN never equals itself, but its bits do.
std::array<std::uint32_t, ParameterCount> bitsOf(const std::array<float, ParameterCount>& values) noexcept {
    return std::bit_cast<std::array<std::uint32_t, ParameterCount>>(values);
}

} // namespace

Lv2Equalizer::Lv2Equalizer(const PluginVariant& pluginVariant, double rate) noexcept
    : variant(pluginVariant), engines{FourBandEqualizer(rate), FourBandEqualizer(rate)} {}

void Lv2Equalizer::connect(std::uint32_t port, void* data) noexcept {
    auto* const samples = static_cast<float*>(data);
    if (port < variant.outputPort(0))
        inputs[port] = samples;
    else if (port < variant.parameterPort(0))
        outputs[port - variant.outputPort(0)] = samples;
    else if (port < variant.enabledPort())
        parameterPorts[port - variant.parameterPort(0)] = samples;
    else if (port == variant.enabledPort())
        enabledPort = samples;
    else if (port == variant.latencyPort())
        latencyPort = samples;
}

void Lv2Equalizer::activate() noexcept {
    for (FourBandEqualizer& engine : engines) engine.reset();
    for (BlockBuffer& block : passed) block.fill(0.0F);
    framesToBlockEnd = BlockSize;
    isSettled = false;
}

void Lv2Equalizer::run(std::size_t frames) noexcept {
    if (latencyPort != nullptr) *latencyPort = static_cast<float>(engines[0].latency());
    if (frames == 0) return; // a host may read the latency before it has set the values

    const Values values = readParameters();
    const bool isEnabled = readEnabled();
    if (!isSettled || bitsOf(values) != bitsOf(lastValues)) handOver(values);
    if (!isSettled) {
        settle();
        wasEnabled = isEnabled;
        outputIsPassed = !isEnabled;
    }
    for (std::size_t done = 0; done < frames;) {
        const std::size_t count = std::min(frames - done, framesToBlockEnd);
        if (count == framesToBlockEnd) {
            completeBlock(done, count, isEnabled);
        } else {
            runPiece(done, count, FourBandEqualizer::Process);
            framesToBlockEnd -= count;
        }
        done += count;
    }
}

Lv2Equalizer::Values Lv2Equalizer::readParameters() const noexcept {
    Values values;
    for (std::size_t i = 0; i < ParameterCount; ++i)
        values[i] = parameterPorts[i] != nullptr ? *parameterPorts[i] : static_cast<float>(Parameters[i].defaultValue);
    return values;
}

bool Lv2Equalizer::readEnabled() const noexcept {
    return enabledPort == nullptr || *enabledPort > 0.0F;
}

// Applies both mappings of the parameter table, so that the engine designs the same filters as in the VST 2 effect,
// which receives normalised values.
void Lv2Equalizer::handOver(const Values& values) noexcept {
    lastValues = values;
    Values mapped;
    for (std::size_t i = 0; i < ParameterCount; ++i) {
        const ParameterKind kind = Parameters[i].kind;
        mapped[i] = static_cast<float>(valueOf(kind, normalisedOf(kind, values[i])));
    }
    for (FourBandEqualizer& engine : engines) engine.setParameters(mapped.data());
}

// Filters two blocks of silence, as `equalize` does. The engine fades the first values in over one block. This fade is
// then over before the sound starts, and the state of the filters is still zero.
void Lv2Equalizer::settle() noexcept {
    const float* const silent[] = {Silence, Silence};
    float* const out[] = {dropped.data(), dropped.data()};
    for (int block = 0; block < 2; ++block) filter(silent, out, BlockSize, FourBandEqualizer::Process);
    isSettled = true;
}

void Lv2Equalizer::completeBlock(std::size_t start, std::size_t count, bool isEnabled) noexcept {
    const int fade = isEnabled ? FourBandEqualizer::FadeIn : FourBandEqualizer::FadeOut;
    runPiece(start, count, isEnabled == wasEnabled ? static_cast<int>(FourBandEqualizer::Process) : fade);
    outputIsPassed = !isEnabled && !wasEnabled;
    wasEnabled = isEnabled;
    framesToBlockEnd = BlockSize;
}

/// Processes frames of one block. `mode` has an effect only if these frames complete the block.
void Lv2Equalizer::runPiece(std::size_t start, std::size_t count, int mode) noexcept {
    const float* in[MostChannels] = {};
    float* out[MostChannels] = {};
    for (std::size_t c = 0; c < variant.channels; ++c) {
        in[c] = inputs[c] != nullptr ? inputs[c] + start : Silence;
        out[c] = outputs[c] != nullptr ? outputs[c] + start : dropped.data();
    }
    // The channels are processed one after the other, so the inputs are copied if the output of one channel is the
    // input of the other channel.
    const bool isCrossed = variant.channels == 2 && (out[0] == in[1] || out[1] == in[0]);
    if (isCrossed || !wasEnabled) {
        for (std::size_t c = 0; c < variant.channels; ++c) {
            std::copy_n(in[c], count, copies[c].begin());
            in[c] = copies[c].data();
        }
    }
    if (!wasEnabled) {
        for (std::size_t c = 0; c < variant.channels; ++c) {
            float* const place = passed[c].data() + (BlockSize - framesToBlockEnd);
            if (outputIsPassed) std::copy_n(place, count, out[c]);
            std::copy_n(in[c], count, place);
            if (outputIsPassed) out[c] = copies[c].data();
        }
    }
    filter(in, out, count, mode);
}

void Lv2Equalizer::filter(const float* const* in, float* const* out, std::size_t count, int mode) noexcept {
    if (variant.channels == 2)
        ChannelPair(engines[0], engines[1]).process(in, out, static_cast<int>(count), mode);
    else
        engines[0].process(in[0], out[0], static_cast<int>(count), mode);
}

} // namespace eq::lv2
