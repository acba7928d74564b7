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

/// The editor of an LV2 plug-in. It shows the values of the ports and writes them. Its bypass is the port `enabled`.
class Lv2Editor : private ParameterPort {
public:
    /// The functions of the host that the editor calls.
    struct Host {
        std::function<void(std::uint32_t port, float value)> write;
        std::function<void(std::uint32_t port, bool isTouched)> touch; ///< empty if the host has no such function
    };

    /// Creates an editor, which is not open yet. `bundleFolder` is the folder with the language files.
    Lv2Editor(const PluginVariant& pluginVariant, const std::string& bundleFolder, Host callbacks);

    /// Opens the editor in the host's window. Returns false if there is no display, or if the window does not exist.
    /// `rate` is the sampling rate of the sound, in Hz.
    [[nodiscard]] bool open(std::uint32_t hostWindow, double rate);
    /// Adopts a new value of a port.
    void follow(std::uint32_t port, float value) noexcept;
    /// Handles events and draws changes. Returns false after the window was destroyed.
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
