#pragma once

#include "plugin/base/AEffect.h"

#include <vector>

namespace eq {

/// A call that an effect made to its host.
struct HostCall {
    const AEffect* effect;
    int32 opcode;
    int32 index;
    intptr value;
    void* ptr;
    float opt;
    bool operator==(const HostCall&) const = default;
};

/// A host that records each call and always returns the same answer. Only one such host may exist at a time, because
/// the callback receives no context.
class ScriptedHost {
public:
    explicit ScriptedHost(intptr answer) {
        nextAnswer = answer;
        recorded.clear();
    }

    static intptr callback(AEffect* effect, int32 opcode, int32 index, intptr value, void* ptr, float opt) {
        recorded.push_back({effect, opcode, index, value, ptr, opt});
        return nextAnswer;
    }

    [[nodiscard]] const std::vector<HostCall>& calls() const { return recorded; }

private:
    static inline intptr nextAnswer = 0;
    static inline std::vector<HostCall> recorded;
};

} // namespace eq
