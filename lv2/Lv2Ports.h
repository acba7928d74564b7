#pragma once

#include "engine/ParameterArray.h"

#include <cstdint>

// The two plug-ins of the bundle, and the order of their ports: inputs, outputs, the 13 parameters in the order of the
// parameter table, `enabled`, `latency`.

namespace eq::lv2 {

/// One of the two plug-ins, which differ only in the number of channels.
struct PluginVariant {
    const char* uri;
    std::uint32_t channels;

    [[nodiscard]] constexpr std::uint32_t inputPort(std::uint32_t channel) const noexcept { return channel; }
    [[nodiscard]] constexpr std::uint32_t outputPort(std::uint32_t channel) const noexcept {
        return channels + channel;
    }
    [[nodiscard]] constexpr std::uint32_t parameterPort(std::uint32_t index) const noexcept {
        return 2 * channels + index;
    }
    [[nodiscard]] constexpr std::uint32_t enabledPort() const noexcept { return parameterPort(ParameterCount); }
    [[nodiscard]] constexpr std::uint32_t latencyPort() const noexcept { return enabledPort() + 1; }
    [[nodiscard]] constexpr std::uint32_t portCount() const noexcept { return latencyPort() + 1; }
};

/// These URIs never change, because sessions of users contain them.
inline constexpr const char* BundleUri = "urn:tavrin:parametric-equalizer";
inline constexpr const char* EditorUri = "urn:tavrin:parametric-equalizer#editor";
inline constexpr PluginVariant Variants[] = {
    {"urn:tavrin:parametric-equalizer#stereo", 2},
    {"urn:tavrin:parametric-equalizer#mono", 1},
};
inline constexpr std::uint32_t MostChannels = 2;

/// The sampling rates that a plug-in supports, in Hz.
inline constexpr ValueRange RateRange = {8000.0, 768000.0};

} // namespace eq::lv2
