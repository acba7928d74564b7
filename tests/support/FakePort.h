#pragma once

#include "curve/model/EditorModel.h"

#include <map>
#include <string>

namespace eq {

/// A parameter port without an effect. Stores the values, and records the calls.
struct FakePort : ParameterPort {
    FakePort() {
        for (std::size_t i = 0; i < ParameterCount; ++i) values[i] = Parameters[i].defaultP;
    }
    float get(int index) override { return values[static_cast<std::size_t>(index)]; }
    void set(int index, float p) override {
        values[static_cast<std::size_t>(index)] = p;
        calls += "=" + std::to_string(index);
    }
    void beginGesture(int index) override { calls += "(" + std::to_string(index); }
    void endGesture(int index) override { calls += ")" + std::to_string(index); }
    std::string text(const char* key) override { return texts[key]; }
    [[nodiscard]] bool hasBypass() const override { return true; }
    bool bypassed() override { return isBypassed; }
    void setBypassed(bool state) override { isBypassed = state; }

    NormalisedParameters values{};
    std::map<std::string, std::string> texts;
    std::string calls; ///< "(5=5)5" is one change of parameter 5 as a gesture
    bool isBypassed = false;
};

} // namespace eq
