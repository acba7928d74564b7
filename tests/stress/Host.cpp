#include "tests/stress/Host.h"

#include "tests/stress/Guarded.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

constexpr std::size_t TextCapacity = 28;

/// Values of the parameters that are none of a slider's positions.
constexpr float Unusual[] = {-1.0f,
                             -1e-40f,
                             0.123456f,
                             2.0f,
                             1e30f,
                             std::numeric_limits<float>::max(),
                             std::numeric_limits<float>::denorm_min(),
                             std::numeric_limits<float>::infinity(),
                             -std::numeric_limits<float>::infinity(),
                             std::numeric_limits<float>::quiet_NaN()};

/// 0 to 1 in steps of which a few are a slider's as well.
constexpr int FineSteps = 128;

/// An editor's grid goes on beyond the ends of its sliders, up to here.
constexpr float EndOfGrid = 1e7f;

bool isWholeNumber(float value) {
    return std::trunc(value) == value;
}

/// Whether somebody sets this value: the hosts above, the constructor, or an editor that puts it on its grid.
bool isSomebodys(float value) {
    if (std::isnan(value) || std::ranges::find(Unusual, value) != std::end(Unusual)) return true;
    if (std::ranges::find(DefaultParameters, value) != DefaultParameters.end()) return true;
    if (value >= 0.0f && value <= 1.0f && isWholeNumber(value * FineSteps)) return true;
    return std::abs(value) <= EndOfGrid && value == static_cast<float>(std::lround(value * 100.0f)) * 0.01f;
}

/// What a host does while it is told of a change, on the thread that it is told on.
void callBack(AEffect* effect, int32 index) {
    static thread_local std::uint64_t turn = 0;
    static thread_local int depth = 0;
    if (depth > 2) return;
    ++depth;
    switch (++turn % 16) {
    case 0:
        dispatch(effect, effEditClose);
        break;
    case 1:
        dispatch(effect, effEditIdle);
        break;
    case 2:
        setParameter(effect, index, 0.5f);
        break;
    default:
        textOf(effect, effGetParamDisplay, index);
        break;
    }
    --depth;
}

} // namespace

intptr hostileCallback(AEffect* effect, int32 opcode, int32 index, intptr value, void* ptr, float opt) {
    require(value == 0 && ptr == nullptr, "a call to the host has arguments that it must not have");
    if (opcode == audioMasterVersion) {
        require(effect == nullptr && index == 0 && opt == 0.0f, "the version is not asked for as it should be");
        return knowsNoVersion ? 0 : std::numeric_limits<int32>::min();
    }
    require(opcode == audioMasterAutomate, "an effect asks the host for what it never asks for");
    require(effect && effect->magic == EffectMagic, "an effect tells of a change with a record that is none");
    require(effect != steadyEffect, "an editor changed a parameter that nobody had touched");
    require(index >= 0 && index < ParameterCount && isSomebodys(opt), "an editor set an impossible value");
    callBack(effect, index);
    return std::numeric_limits<int32>::max();
}

#ifdef _WIN32
#define EQ_OF_THE_WINDOWS(function) function
HostWindows::HostWindows(const LoadedLibrary&)
#else
#define EQ_OF_THE_WINDOWS(function) library.find<decltype(&function)>(#function)
HostWindows::HostWindows(const LoadedLibrary& library)
#endif
    : make(EQ_OF_THE_WINDOWS(makeHostWindow)),
      destroy(EQ_OF_THE_WINDOWS(destroyHostWindow)),
      children(EQ_OF_THE_WINDOWS(countChildren)),
      all(EQ_OF_THE_WINDOWS(countWindows)),
      pump(EQ_OF_THE_WINDOWS(pumpMessages)) {
}

Host::Host(const std::string& path) : library(path), windows(library), main(library.find<EffectMainProc>("main")) {
    require(main != nullptr, "the library has no main");
    ++counts.loads;
}

AEffect* Host::tryMake() {
    AEffect* const effect = main(hostileCallback);
    if (effect) ++counts.instances;
    return effect;
}

AEffect* Host::make(Choices& choices) {
    if (choices.oneIn(4)) {
        knowsNoVersion = true;
        require(tryMake() == nullptr, "main gave an effect to a host without a version");
        knowsNoVersion = false;
    }
    AEffect* const effect = tryMake();
    require(effect != nullptr, "main gave no effect");
    require(effect->magic == EffectMagic && effect->flags == 0x19 && effect->numParams == ParameterCount &&
                effect->initialDelay == BlockSize && effect->user == nullptr,
            "a record is filled in a wrong way");
    return effect;
}

intptr dispatch(AEffect* effect, int32 opcode, int32 index, intptr value, void* ptr, float opt) {
    ++counts.calls;
    return effect->dispatcher(effect, opcode, index, value, ptr, opt);
}

void close(AEffect* effect) {
    require(dispatch(effect, effClose) == 1, "effClose did not give 1");
}

std::string textOf(AEffect* effect, int32 opcode, int32 index) {
    GuardedText text(TextCapacity);
    require(dispatch(effect, opcode, index, 0, text.data()) == 0, "a request for a text did not give 0");
    if (opcode != effGetProgramName && (index < 0 || index >= ParameterCount)) {
        text.checkUntouched();
        return {};
    }
    text.check();
    const auto* const end = static_cast<const char*>(std::memchr(text.data(), '\0', text.size()));
    require(end != nullptr, "a text has no end");
    ++counts.texts;
    return std::string(static_cast<const char*>(text.data()), end);
}

void setParameter(AEffect* effect, int32 index, float value) {
    ++counts.calls;
    effect->setParameter(effect, index, value);
}

float parameterValue(Choices& choices) {
    return choices.oneIn(8) ? choices.of(Unusual) : static_cast<float>(choices.below(FineSteps + 1)) / FineSteps;
}

void readParameter(Instance& instance, int32 index) {
    ++counts.calls;
    const float value = instance.effect->getParameter(instance.effect, index);
    if (index < 0 || index >= ParameterCount) {
        require(value == 0.0f, "a parameter beyond the last is not 0");
    } else if (instance.isSteady()) {
        require(value == instance.parameters[static_cast<std::size_t>(index)],
                "a parameter did not stay as it was set");
    } else {
        require(isSomebodys(value), "a parameter has a value that nobody has set");
    }
}
