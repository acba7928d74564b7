#include "tools/equalize/EffectInstance.h"

#include <array>
#include <vector>

namespace eq {
namespace {

void send(AEffect* effect, EffectOpcode opcode, intptr value = 0, float option = 0.0F) {
    effect->dispatcher(effect, opcode, 0, value, nullptr, option);
}

} // namespace

void EffectInstance::Closer::operator()(AEffect* effect) const {
    send(effect, effMainsChanged, 0);
    send(effect, effClose);
}

EffectInstance::EffectInstance(const EffectLibrary& library, const Settings::Resolved& settings, int sampleRate)
    : m_effect(library.makeInstance()) {
    AEffect* const effect = m_effect.get();
    send(effect, effOpen);
    send(effect, effSetSampleRate, 0, static_cast<float>(sampleRate));
    for (int index = 0; index < ParameterCount; ++index)
        if (const std::optional<float> value = settings[static_cast<std::size_t>(index)])
            effect->setParameter(effect, index, *value);
    send(effect, effMainsChanged, 1);
    settle();
}

/// Runs silence through the new instance. The effect fades in each change over one block, and also its first settings.
/// A file must have its settings from the first sample on, so this fade must end before the sound begins. Silence
/// leaves no sound in the filters. Whole blocks keep the sound aligned with the effect's blocks.
void EffectInstance::settle() {
    std::vector<float> silence(static_cast<std::size_t>(delay()));
    std::vector<float> other(silence);
    for (int block = 0; block < 2; ++block) process(silence.data(), other.data(), delay());
}

void EffectInstance::process(float* first, float* second, int frames) noexcept {
    float* channels[] = {first, second};
    m_effect->processReplacing(m_effect.get(), channels, channels, frames);
}

NormalisedValues EffectInstance::parameters() const {
    NormalisedValues values;
    for (int index = 0; index < ParameterCount; ++index)
        values[static_cast<std::size_t>(index)] = m_effect->getParameter(m_effect.get(), index);
    return values;
}

std::string EffectInstance::parameterName(int index) const {
    // The interface limits the length of names, but effects exceed this limit.
    std::array<char, 256> text = {};
    m_effect->dispatcher(m_effect.get(), effGetParamName, index, 0, text.data(), 0.0F);
    return text.data();
}

} // namespace eq
