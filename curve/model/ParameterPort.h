#pragma once

#include <string>

namespace eq {

/// The interface through which the editor reads and writes the 13 parameters. Each format implements it: VST 2 with the
/// effect, LV2 with its ports. All calls come from the thread that calls the editor's `idle`.
class ParameterPort {
public:
    virtual ~ParameterPort() = default;

    /// Returns the normalised value of a parameter, 0 to 1, where 0 is the top of the range.
    virtual float get(int index) = 0;
    /// Sets a parameter and notifies the host. During this call, the host may call the effect and the owner of the
    /// editor.
    virtual void set(int index, float p) = 0;
    /// `beginGesture` and `endGesture` enclose the changes of one gesture of the user.
    virtual void beginGesture(int /*index*/) {}
    virtual void endGesture(int /*index*/) {}

    /// Returns the translation of a language key in UTF-8, or an empty text.
    virtual std::string text(const char* key) = 0;

    /// Returns whether the format has a bypass. The next two functions return and set the state of the bypass.
    [[nodiscard]] virtual bool hasBypass() const { return false; }
    [[nodiscard]] virtual bool bypassed() { return false; }
    virtual void setBypassed(bool /*state*/) {}
};

} // namespace eq
