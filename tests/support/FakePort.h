#pragma once

#include "curve/model/EditorModel.h"

#include <map>
#include <set>
#include <string>

namespace eq {

/// A parameter port without an effect. Stores the values, and checks the gestures.
struct FakePort : ParameterPort {
    FakePort() {
        for (std::size_t i = 0; i < ParameterCount; ++i) values[i] = Parameters[i].defaultP;
    }
    float get(int index) override { return values[static_cast<std::size_t>(index)]; }
    void set(int index, float p) override {
        values[static_cast<std::size_t>(index)] = p;
        isOrderly = isOrderly && touched.contains(index);
    }
    void beginGesture(int index) override { isOrderly = touched.insert(index).second && isOrderly; }
    void endGesture(int index) override { isOrderly = touched.erase(index) == 1 && isOrderly; }
    std::string text(const char* key) override { return texts[key]; }
    [[nodiscard]] bool hasBypass() const override { return true; }
    bool bypassed() override { return isBypassed; }
    void setBypassed(bool state) override { isBypassed = state; }

    NormalisedParameters values{};
    std::map<std::string, std::string> texts;
    std::set<int> touched; ///< the parameters of open gestures
    bool isOrderly = true; ///< each change was part of a gesture, and each gesture has one begin and one end
    bool isBypassed = false;
};

} // namespace eq
