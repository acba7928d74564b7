#pragma once

#include "tests/support/EngineInput.h"
#include "tests/support/LoadedLibrary.h"

#include <lv2/core/lv2.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace eq {

/// Returns the plug-in of a URI, or null.
inline const LV2_Descriptor* findLv2(const LoadedLibrary& library, const std::string& uri) {
    const auto descriptor = library.find<LV2_Descriptor_Function>("lv2_descriptor");
    for (std::uint32_t i = 0; descriptor != nullptr && descriptor(i) != nullptr; ++i)
        if (uri == descriptor(i)->URI) return descriptor(i);
    return nullptr;
}

/// An instance of the plug-in with all control ports connected. The published order of the ports is: inputs, outputs,
/// 13 parameters, enabled, latency.
class Lv2Instance {
public:
    /// Throws std::runtime_error if the plug-in creates no instance.
    Lv2Instance(const LoadedLibrary& library, std::uint32_t channels, double rate)
        : m_channels(channels),
          m_descriptor(
              findLv2(library, std::string("urn:tavrin:parametric-equalizer#") + (channels == 1 ? "mono" : "stereo"))),
          m_handle(m_descriptor != nullptr ? m_descriptor->instantiate(m_descriptor, rate, "", NoFeatures) : nullptr) {
        if (m_handle == nullptr) throw std::runtime_error("no instance");
        for (std::uint32_t i = 0; i < values.size(); ++i) connect(parameterPort(i), &values[i]);
        connect(parameterPort(13), &enabled);
        connect(parameterPort(14), &latency);
        activate();
    }
    ~Lv2Instance() {
        deactivate();
        m_descriptor->cleanup(m_handle);
    }
    Lv2Instance(const Lv2Instance&) = delete;
    Lv2Instance& operator=(const Lv2Instance&) = delete;

    [[nodiscard]] std::uint32_t parameterPort(std::uint32_t index) const { return 2 * m_channels + index; }
    void connect(std::uint32_t port, float* data) const { m_descriptor->connect_port(m_handle, port, data); }
    void activate() const { m_descriptor->activate(m_handle); }
    void deactivate() const {
        if (m_descriptor->deactivate != nullptr) m_descriptor->deactivate(m_handle);
    }
    void run(std::size_t frames) const { m_descriptor->run(m_handle, static_cast<std::uint32_t>(frames)); }

    /// Processes frames of a stream in place. Each channel has its own buffer.
    void run(std::vector<Samples>& channels, std::size_t start, std::size_t frames) const {
        for (std::uint32_t c = 0; c < m_channels; ++c) {
            connect(c, channels[c].data() + start);
            connect(m_channels + c, channels[c].data() + start);
        }
        run(frames);
    }

    Values values = {0, 20, 200, 2000, 20000, 0, 0, 0, 0, 5, 5, 5, 5};
    float enabled = 1;
    float latency = 0;

private:
    static constexpr const LV2_Feature* NoFeatures[] = {nullptr};

    std::uint32_t m_channels;
    const LV2_Descriptor* m_descriptor;
    LV2_Handle m_handle;
};

} // namespace eq
