#include "tests/stress/Host.h"

// A thread that sets and reads parameters and asks for texts.

namespace {

/// An instance of this thread's own, from its beginning to its end.
void useOne(const Host& host, Choices& choices) {
    AEffect* const effect = host.make();
    for (int32 i = 0; i < ParameterCount; ++i) {
        const float value = choices.number();
        effect->setParameter(effect, i, value);
        const float kept = effect->getParameter(effect, i);
        require(kept == value || (std::isnan(kept) && std::isnan(value)), "a parameter is not what was set");
        textOf(effect, effGetParamDisplay, i);
    }
    dispatch(effect, effClose, 1);
}

void readParameter(const Instance& instance, int32 index) {
    const float value = instance.effect->getParameter(instance.effect, index);
    const bool isNone = index < 0 || index >= ParameterCount;
    require(isNone ? value == 0.0f : isSomebodys(value) || instance.twin, "a parameter has nobody's value");
    require(isNone || !instance.twin || value == instance.parameters[static_cast<std::size_t>(index)],
            "a parameter did not stay as it was set");
}

void askForTexts(const Instance& instance, int32 index) {
    textOf(instance.effect, effGetParamName, index);
    textOf(instance.effect, effGetParamLabel, index);
    const std::string text = textOf(instance.effect, effGetParamDisplay, index);
    require(!instance.twin || textOf(instance.twin, effGetParamDisplay, index) == text,
            "two instances show a value in different ways");
}

} // namespace

void stepAsControl(Host& host, User self, Choices& choices) {
    if (choices.oneIn(40)) return useOne(host, choices);
    Instance& instance = choices.of(host.instances);
    const std::lock_guard use(instance.users[self]);
    for (std::size_t i = choices.below(50); i > 0; --i) {
        const int32 index = choices.oneIn(8) ? choices.integer() : choices.between(-1, ParameterCount);
        if (choices.oneIn(3)) {
            readParameter(instance, index);
        } else if (choices.oneIn(2)) {
            askForTexts(instance, index);
        } else if (!instance.twin) {
            instance.effect->setParameter(instance.effect, index, parameterValue(choices));
        }
    }
}
