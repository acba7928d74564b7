#include "tests/stress/Host.h"

#include <algorithm>
#include <cstring>

namespace {

/// Values of the parameters that are none of a slider's positions.
constexpr float Unusual[] = {-1.0f, -1e-40f, 0.123456f, 1e30f, FLT_MAX, FLT_TRUE_MIN, INFINITY, -INFINITY, NAN};

/// An editor's grid goes on beyond the ends of its sliders, up to here.
constexpr float EndOfGrid = 1e7f;

/// What a host does while it is told of a change, on the thread that it is told on.
void callBack(AEffect* effect, int32 index) {
    static thread_local std::uint64_t turn = 0;
    static thread_local int depth = 0;
    if (depth > 2) return;
    ++depth;
    const std::uint64_t action = ++turn % 16;
    if (action == 0) {
        dispatch(effect, effEditClose, 0);
    } else if (action == 1) {
        dispatch(effect, effEditIdle, 0);
    } else if (action == 2) {
        effect->setParameter(effect, index, 0.5f);
    } else {
        textOf(effect, effGetParamDisplay, index);
    }
    --depth;
}

/// What the effects call. It answers anything, and calls back into the effect from within.
intptr hostileCallback(AEffect* effect, int32 opcode, int32 index, intptr value, void* ptr, float opt) {
    require(value == 0 && ptr == nullptr, "a call to the host has arguments that it must not have");
    if (opcode == audioMasterVersion) return INT32_MIN;
    require(opcode == audioMasterAutomate, "an effect asks the host for what it never asks for");
    require(effect && effect->magic == EffectMagic, "an effect tells of a change with a record that is none");
    require(effect != steadyEffect, "an editor changed a parameter that nobody had touched");
    require(index >= 0 && index < ParameterCount && isSomebodys(opt), "an editor set an impossible value");
    callBack(effect, index);
    return INT32_MAX;
}

} // namespace

Host::Host(const std::string& path)
    : library(path),
#ifdef _WIN32
      windows(hostWindows()) {
#else
      windows(library.find<decltype(&hostWindows)>("hostWindows")()) {
#endif
    ++counts.loads;
}

AEffect* Host::make() const {
    return library.find<EffectMainProc>("main")(hostileCallback);
}

void dispatch(AEffect* effect, int32 opcode, intptr answer, int32 index, intptr value, void* ptr, float opt) {
    const intptr found = effect->dispatcher(effect, opcode, index, value, ptr, opt);
    if (found != answer) violation("opcode " + std::to_string(opcode) + " was answered with " + std::to_string(found));
}

std::string textOf(AEffect* effect, int32 opcode, int32 index) {
    constexpr std::size_t Capacity = 28;
    GuardedText text(Capacity);
    const bool isNone = opcode != effGetProgramName && (index < 0 || index >= ParameterCount);
    dispatch(effect, opcode, 0, index, 0, text.data());
    text.check(isNone);
    const auto* const end = std::find(text.data(), text.data() + Capacity, '\0');
    require(isNone || end != text.data() + Capacity, "a text has no end");
    return {static_cast<const char*>(text.data()), end};
}

float parameterValue(Choices& choices) {
    return choices.oneIn(8) ? choices.of(Unusual) : static_cast<float>(choices.between(0, 100)) * 0.01f;
}

// A host's, the constructor's, or that of an editor, which puts it on its grid.
bool isSomebodys(float value) {
    return std::isnan(value) || std::ranges::find(Unusual, value) != std::end(Unusual) ||
           std::ranges::find(DefaultParameters, value) != DefaultParameters.end() ||
           (std::abs(value) <= EndOfGrid && value == static_cast<float>(std::lround(value * 100.0f)) * 0.01f);
}
