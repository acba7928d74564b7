#include "lv2/editor/Lv2Editor.h"

#include "parameters/ParameterTable.h"

#include <utility>

namespace eq::lv2 {

namespace {

float portValueOf(int index, float p) noexcept {
    return static_cast<float>(valueOf(Parameters[index].kind, static_cast<double>(p)));
}

} // namespace

Lv2Editor::Lv2Editor(const PluginVariant& pluginVariant, const std::string& bundleFolder, Host callbacks)
    : variant(pluginVariant), host(std::move(callbacks)), language(bundleFolder) {
    for (std::size_t i = 0; i < ParameterCount; ++i) normalised[i] = Parameters[i].defaultP;
}

bool Lv2Editor::open(std::uint32_t hostWindow, double rate) {
    editor = CurveEditor::open(*this, hostWindow, rate);
    return editor != nullptr;
}

void Lv2Editor::follow(std::uint32_t port, float value) noexcept {
    if (port == variant.enabledPort()) isBypassed = value <= 0.0F;
    const std::uint32_t index = port - variant.parameterPort(0);
    if (port < variant.parameterPort(0) || index >= ParameterCount) return;
    const int i = static_cast<int>(index);
    // The host may send a value back that the editor wrote. Keep the normalised value then, because the conversion
    // would round it.
    if (portValueOf(i, normalised[index]) != value) normalised[index] = normalisedOf(Parameters[i].kind, value);
}

bool Lv2Editor::idle() {
    editor->idle();
    return editor->window() != 0;
}

void Lv2Editor::resize(int width, int height) {
    editor->resize(width, height);
}

float Lv2Editor::get(int index) {
    return normalised[static_cast<std::size_t>(index)];
}

void Lv2Editor::set(int index, float p) {
    normalised[static_cast<std::size_t>(index)] = p;
    host.write(variant.parameterPort(static_cast<std::uint32_t>(index)), portValueOf(index, p));
}

void Lv2Editor::beginGesture(int index) {
    if (host.touch) host.touch(variant.parameterPort(static_cast<std::uint32_t>(index)), true);
}

void Lv2Editor::endGesture(int index) {
    if (host.touch) host.touch(variant.parameterPort(static_cast<std::uint32_t>(index)), false);
}

void Lv2Editor::setBypassed(bool state) {
    isBypassed = state;
    host.write(variant.enabledPort(), state ? 0.0F : 1.0F);
}

} // namespace eq::lv2
