// The LV2 interface of the editor. Translates the host's calls into calls of Lv2Editor.

#include "engine/FilterDesign.h"
#include "lv2/editor/Lv2Editor.h"

#include <cstring>
#include <iterator>
#include <memory>
#include <utility>

#include <lv2/core/lv2.h>
#include <lv2/options/options.h>
#include <lv2/parameters/parameters.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>

namespace eq::lv2 {

namespace {

Lv2Editor& editorOf(LV2UI_Handle handle) noexcept {
    return *static_cast<Lv2Editor*>(handle);
}

/// Returns the data of a feature, or null if the host does not have the feature.
template <typename Data>
Data* featureOf(const LV2_Feature* const* features, const char* uri) noexcept {
    for (; features && *features; ++features)
        if (std::strcmp((*features)->URI, uri) == 0) return static_cast<Data*>((*features)->data);
    return nullptr;
}

/// Returns the sampling rate of the sound in Hz, or the engine's default if the host does not supply a usable rate.
double rateOf(const LV2_Feature* const* features) noexcept {
    const auto* const map = featureOf<LV2_URID_Map>(features, LV2_URID__map);
    const auto* option = featureOf<const LV2_Options_Option>(features, LV2_OPTIONS__options);
    if (!map || !option) return FilterDesign::DefaultRate;
    const LV2_URID wanted = map->map(map->handle, LV2_PARAMETERS__sampleRate);
    for (; option->key != 0 || option->value; ++option) {
        if (option->key != wanted || option->size != sizeof(float)) continue;
        const double rate = *static_cast<const float*>(option->value);
        if (rate >= RateRange.lowest && rate <= RateRange.highest) return rate;
    }
    return FilterDesign::DefaultRate;
}

const PluginVariant* variantOf(const char* uri) noexcept {
    for (const PluginVariant& variant : Variants)
        if (std::strcmp(variant.uri, uri) == 0) return &variant;
    return nullptr;
}

/// Returns null for a plug-in of another bundle, and if the host's window or the display is missing.
LV2UI_Handle instantiate(const LV2UI_Descriptor*, const char* pluginUri, const char* bundlePath,
                         LV2UI_Write_Function write, LV2UI_Controller controller, LV2UI_Widget* widget,
                         const LV2_Feature* const* features) noexcept try {
    const PluginVariant* const variant = variantOf(pluginUri);
    void* const parent = featureOf<void>(features, LV2_UI__parent);
    if (!variant || !parent || !write) return nullptr;
    Lv2Editor::Host host;
    host.write = [=](std::uint32_t port, float value) { write(controller, port, sizeof value, 0, &value); };
    if (const auto* const touch = featureOf<const LV2UI_Touch>(features, LV2_UI__touch); touch && touch->touch)
        host.touch = [touch](std::uint32_t port, bool state) { touch->touch(touch->handle, port, state); };

    auto editor = std::make_unique<Lv2Editor>(*variant, bundlePath, std::move(host));
    const auto window = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(parent));
    if (!editor->open(window, rateOf(features))) return nullptr;
    *widget = reinterpret_cast<LV2UI_Widget>(std::uintptr_t{editor->curve().window()});
    const auto [width, height] = editor->curve().size();
    if (const auto* const resize = featureOf<const LV2UI_Resize>(features, LV2_UI__resize); resize && resize->ui_resize)
        resize->ui_resize(resize->handle, width, height);
    return editor.release();
} catch (...) {
    return nullptr;
}

void cleanup(LV2UI_Handle handle) noexcept {
    delete static_cast<Lv2Editor*>(handle);
}

void portEvent(LV2UI_Handle handle, std::uint32_t port, std::uint32_t size, std::uint32_t format,
               const void* buffer) noexcept {
    float value = 0.0F;
    if (format != 0 || size != sizeof value || !buffer) return;
    std::memcpy(&value, buffer, sizeof value);
    editorOf(handle).follow(port, value);
}

/// Returns a number other than zero after the window was destroyed.
int idle(LV2UI_Handle handle) noexcept try { return editorOf(handle).idle() ? 0 : 1; } catch (...) {
    return 0; // if memory is short, the next call continues
}

int resize(LV2UI_Feature_Handle handle, int width, int height) noexcept {
    editorOf(handle).resize(width, height);
    return 0;
}

const void* extensionData(const char* uri) noexcept {
    static constexpr LV2UI_Idle_Interface Idle = {idle};
    static constexpr LV2UI_Resize Resize = {nullptr, resize};
    if (std::strcmp(uri, LV2_UI__idleInterface) == 0) return &Idle;
    return std::strcmp(uri, LV2_UI__resize) == 0 ? &Resize : nullptr;
}

constexpr LV2UI_Descriptor Descriptor = {EditorUri, instantiate, cleanup, portEvent, extensionData};

} // namespace

} // namespace eq::lv2

// exports.map exports this function.
LV2_SYMBOL_EXPORT const LV2UI_Descriptor* lv2ui_descriptor(std::uint32_t index) {
    return index == 0 ? &eq::lv2::Descriptor : nullptr;
}
