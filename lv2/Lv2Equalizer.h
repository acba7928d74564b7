#pragma once

#include "engine/FourBandEqualizer.h"
#include "lv2/Lv2Ports.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace eq::lv2 {

/// One instance of an LV2 plug-in: an engine per channel, and the host's buffers.
///
///     ports --> both mappings of the parameter table --> engines        (only if a value has changed)
///     input --> engines, cut where their blocks end --> output, 2048 frames later
///
/// The port `enabled` selects between filtered sound and passed sound. Passed sound is unchanged, and has the same
/// latency. The block in which the port changes is crossfaded. The filters also run on passed sound, because filters
/// that start within a sound would ring when the bypass ends.
///
/// The host calls only one function at a time. `run` allocates nothing, takes no lock and makes no system call.
class Lv2Equalizer {
public:
    /// `rate` is in Hz, within RateRange.
    Lv2Equalizer(const PluginVariant& pluginVariant, double rate) noexcept;

    /// Connects a port to the host's memory; null disconnects it. Unknown ports are ignored. Without a connection, a
    /// control has its default value, an input is silent, and an output is dropped.
    void connect(std::uint32_t port, void* data) noexcept;

    /// Discards all sound. The next call of `run` with frames uses its values without a crossfade.
    void activate() noexcept;

    /// Equalizes `frames` frames. Inputs and outputs may be the same buffers in any combination; different
    /// buffers must not overlap.
    void run(std::size_t frames) noexcept;

private:
    using Values = std::array<float, ParameterCount>;

    using BlockBuffer = std::array<float, FourBandEqualizer::BlockSize>;

    [[nodiscard]] Values readParameters() const noexcept;
    [[nodiscard]] bool readEnabled() const noexcept;
    void handOver(const Values& values) noexcept;
    void settle() noexcept;
    void completeBlock(std::size_t start, std::size_t count, bool isEnabled) noexcept;
    void runPiece(std::size_t start, std::size_t count, int mode) noexcept;
    void filter(const float* const* in, float* const* out, std::size_t count, int mode) noexcept;

    const PluginVariant& variant;
    std::array<FourBandEqualizer, MostChannels> engines;
    std::array<const float*, MostChannels> inputs = {};
    std::array<float*, MostChannels> outputs = {};
    std::array<const float*, ParameterCount> parameterPorts = {};
    const float* enabledPort = nullptr;
    float* latencyPort = nullptr;

    bool isSettled = false; // `settle` was called since `activate`
    Values lastValues = {}; // the port values in use
    std::size_t framesToBlockEnd = FourBandEqualizer::BlockSize;
    bool wasEnabled = true;           // the value of `enabled` at the end of the last block
    bool outputIsPassed = false;      // the block that is now output is passed sound
    BlockBuffer passed[MostChannels]; // unfiltered sound, collected and output as in the engine
    BlockBuffer copies[MostChannels]; // copies of inputs that an output may overwrite
    BlockBuffer dropped;              // output without a connected port
};

} // namespace eq::lv2
