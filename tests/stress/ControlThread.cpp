#include "tests/stress/Host.h"

#include <cmath>

// A thread that sets and reads parameters and asks for texts.

namespace {

int32 anyIndex(Choices& choices) {
    return choices.oneIn(8) ? choices.integer() : choices.between(-1, ParameterCount);
}

/// An instance of this thread's own, from its beginning to its end.
void useOne(Host& host, Choices& choices) {
    AEffect* const effect = host.make(choices);
    for (int32 i = 0; i < ParameterCount; ++i) {
        const float value = choices.number();
        setParameter(effect, i, value);
        const float kept = effect->getParameter(effect, i);
        require(kept == value || (std::isnan(kept) && std::isnan(value)), "a parameter is not what was set");
        textOf(effect, effGetParamDisplay, i);
    }
    close(effect);
}

void askForTexts(Instance& instance, int32 index) {
    AEffect* const effect = instance.effect;
    textOf(effect, effGetParamName, index);
    textOf(effect, effGetParamLabel, index);
    const std::string first = textOf(effect, effGetParamDisplay, index);
    if (!instance.isSteady()) return;
    require(textOf(effect, effGetParamDisplay, index) == first, "a text changes by itself");
    require(textOf(instance.twin, effGetParamDisplay, index) == first, "two instances show a value in different ways");
}

} // namespace

void stepAsControl(Host& host, Choices& choices) {
    if (choices.oneIn(40)) return useOne(host, choices);
    Instance& instance = choices.of(host.instances);
    const std::shared_lock shared(instance.use);
    if (!instance.effect) return;
    for (std::size_t i = choices.below(50); i > 0; --i) {
        const int32 index = anyIndex(choices);
        switch (choices.below(3)) {
        case 0:
            if (!instance.isSteady()) setParameter(instance.effect, index, parameterValue(choices));
            break;
        case 1:
            readParameter(instance, index);
            break;
        default:
            askForTexts(instance, index);
            break;
        }
    }
}
