#pragma once

#include "curve/model/ParameterPort.h"
#include "curve/window/CurveEditor.h"
#include "lv2/Lv2Ports.h"
#include "lv2/editor/EditorLanguage.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace eq::lv2 {

/// The editor of an LV2 plug-in. It follows the ports and writes them. The port `enabled` is its bypass.
class Lv2Editor : private ParameterPort {
public:
    /// What the editor calls in the host.
    struct Host {
        std::function<void(std::uint32_t port, float value)> write;
        std::function<void(std::uint32_t port, bool isTouched)> touch; ///< may be empty
    };

    /// The folder of the bundle has the language files.
    Lv2Editor(const PluginVariant& pluginVariant, const std::string& bundleFolder, Host callbacks);

    /// Returns false without a display or without the host's window. `rate` in Hz is that of the sound.
    [[nodiscard]] bool open(std::uint32_t hostWindow, double rate);
    /// A port has a new value.
    void follow(std::uint32_t port, float value) noexcept;
    /// Returns false when the window is gone.
    [[nodiscard]] bool idle();
    void resize(int width, int height);

    [[nodiscard]] const CurveEditor& curve() const noexcept { return *editor; }

private:
    float get(int index) override;
    void set(int index, float p) override;
    void beginGesture(int index) override;
    void endGesture(int index) override;
    std::string text(const char* key) override { return language.text(key); }
    [[nodiscard]] bool hasBypass() const override { return true; }
    bool bypassed() override { return isBypassed; }
    void setBypassed(bool state) override;

    const PluginVariant& variant;
    const Host host;
    const EditorLanguage language;
    std::array<float, ParameterCount> normalised{};
    bool isBypassed = false;
    std::unique_ptr<CurveEditor> editor;
};

} // namespace eq::lv2
