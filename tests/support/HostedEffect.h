#pragma once

#include "plugin/base/AEffect.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace eq {

/// Uses an effect through its record, as a host does. The destructor closes the effect.
class HostedEffect {
public:
    /// `made` is the result of the library's `main`. Throws std::logic_error if `made` is null.
    explicit HostedEffect(AEffect* made) : record(made) {
        if (!made) throw std::logic_error("main has made no effect");
    }
    ~HostedEffect() { dispatch(effClose); }
    HostedEffect(const HostedEffect&) = delete;
    HostedEffect& operator=(const HostedEffect&) = delete;

    intptr dispatch(int32 opcode, void* ptr = nullptr, int32 index = 0, intptr value = 0) const {
        return record->dispatcher(record, opcode, index, value, ptr, 0.0f);
    }
    void set(int32 index, float value) const { record->setParameter(record, index, value); }
    [[nodiscard]] float get(int32 index) const { return record->getParameter(record, index); }
    /// Sets the first parameters, one for each value.
    void setAll(const auto& values) const {
        for (int32 index = 0; const float value : values) set(index++, value);
    }
    [[nodiscard]] std::vector<float> all() const {
        std::vector<float> values(13);
        for (int32 i = 0; i < 13; ++i) values[static_cast<std::size_t>(i)] = get(i);
        return values;
    }
    /// Returns the size of the editor, or null if the effect reports no size.
    [[nodiscard]] const ERect* rect() const {
        ERect* answer = nullptr;
        return dispatch(effEditGetRect, &answer) == 1 ? answer : nullptr;
    }
    /// Returns the text of a parameter, or 64 times '#' if the effect writes no text.
    [[nodiscard]] std::string display(int32 index) const {
        std::string text(64, '#');
        dispatch(effGetParamDisplay, text.data(), index);
        return text.substr(0, text.find('\0'));
    }

    AEffect* const record;
};

} // namespace eq
