#pragma once

#include "plugin/base/AEffect.h"
#include "tools/equalize/EffectLibrary.h"
#include "tools/equalize/ParameterText.h"
#include "tools/equalize/Settings.h"

#include <memory>
#include <string>

namespace eq {

/// One running instance of the effect, for two channels.
class EffectInstance {
public:
    /// Starts an instance with the settings, so that it is ready to process sound. Throws FileError.
    EffectInstance(const EffectLibrary& library, const Settings::Resolved& settings, int sampleRate);

    /// Returns the delay from input to output, in samples.
    [[nodiscard]] int delay() const { return m_effect->initialDelay; }

    /// Equalizes `frames` samples of both channels in place.
    void process(float* first, float* second, int frames) noexcept;

    [[nodiscard]] NormalisedValues parameters() const;

    /// Returns the name that the effect reports for a parameter.
    [[nodiscard]] std::string parameterName(int index) const;

private:
    struct Closer {
        void operator()(AEffect* effect) const;
    };

    void settle();

    std::unique_ptr<AEffect, Closer> m_effect;
};

} // namespace eq
