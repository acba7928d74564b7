#pragma once

#include <string>

namespace eq {

/// The 13 parameters as the editor reads and writes them. Each format implements this interface: VST 2 over the effect,
/// LV2 over its ports. All calls come from the thread that idles the editor.
class ParameterPort {
public:
    virtual ~ParameterPort() = default;

    /// Returns the normalised value of a parameter, 0 to 1, where 0 is the top of the range.
    virtual float get(int index) = 0;
    /// Sets a parameter and notifies the host. The host may call the effect, and the editor's owner, in this call.
    virtual void set(int index, float p) = 0;
    /// Enclose the changes of one movement of the user.
    virtual void beginGesture(int /*index*/) {}
    virtual void endGesture(int /*index*/) {}

    /// Returns the translation of a language key in UTF-8, or an empty text.
    virtual std::string text(const char* key) = 0;

    /// Whether the format has a bypass, and its state.
    [[nodiscard]] virtual bool hasBypass() const { return false; }
    [[nodiscard]] virtual bool bypassed() { return false; }
    virtual void setBypassed(bool /*state*/) {}
};

} // namespace eq
