// The LV2 interface of the plug-ins. Translates the host's calls into calls of Lv2Equalizer.

#include "lv2/Lv2Equalizer.h"

#include <lv2/core/lv2.h>

#include <cstdint>
#include <cstring>
#include <iterator>
#include <new>

namespace eq::lv2 {

namespace {

Lv2Equalizer& instanceOf(LV2_Handle handle) noexcept {
    return *static_cast<Lv2Equalizer*>(handle);
}

/// Returns null for a rate outside RateRange, for an unknown plug-in, and if memory is short.
LV2_Handle instantiate(const LV2_Descriptor* descriptor, double rate, const char*, const LV2_Feature* const*) noexcept {
    if (!(rate >= RateRange.lowest && rate <= RateRange.highest)) return nullptr;
    for (const PluginVariant& variant : Variants)
        if (std::strcmp(variant.uri, descriptor->URI) == 0) return new (std::nothrow) Lv2Equalizer(variant, rate);
    return nullptr;
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* data) noexcept {
    instanceOf(handle).connect(port, data);
}

void activate(LV2_Handle handle) noexcept {
    instanceOf(handle).activate();
}

void run(LV2_Handle handle, std::uint32_t frames) noexcept {
    instanceOf(handle).run(frames);
}

void cleanup(LV2_Handle handle) noexcept {
    delete static_cast<Lv2Equalizer*>(handle);
}

constexpr LV2_Descriptor descriptorOf(const PluginVariant& variant) noexcept {
    return {variant.uri, instantiate, connectPort, activate, run, nullptr, cleanup, nullptr};
}

constexpr LV2_Descriptor Descriptors[] = {descriptorOf(Variants[0]), descriptorOf(Variants[1])};
static_assert(std::size(Descriptors) == std::size(Variants));

} // namespace

} // namespace eq::lv2

// exports.map exports this function.
LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    return index < std::size(eq::lv2::Descriptors) ? &eq::lv2::Descriptors[index] : nullptr;
}
