#pragma once

#include "curve/model/EditorModel.h"

#include <map>
#include <string>

namespace eq {

/// A parameter port without an effect. Stores the values, and counts the changes and the open gestures.
struct FakePort : ParameterPort {
    FakePort() {
        for (std::size_t i = 0; i < ParameterCount; ++i) values[i] = Parameters[i].defaultP;
    }
    float get(int index) override { return values[static_cast<std::size_t>(index)]; }
    void set(int index, float p) override {
        values[static_cast<std::size_t>(index)] = p;
        ++setCount;
        isSetOutsideGesture = isSetOutsideGesture || openGestures == 0;
    }
    void beginGesture(int /*index*/) override { ++openGestures; }
    void endGesture(int /*index*/) override { --openGestures; }
    std::string text(const char* key) override { return texts[key]; }
    [[nodiscard]] bool hasBypass() const override { return true; }
    bool bypassed() override { return isBypassed; }
    void setBypassed(bool state) override { isBypassed = state; }

    NormalisedParameters values{};
    std::map<std::string, std::string> texts;
    int setCount = 0;
    int openGestures = 0;
    bool isSetOutsideGesture = false;
    bool isBypassed = false;
};

} // namespace eq
