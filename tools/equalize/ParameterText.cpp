#include "tools/equalize/ParameterText.h"

#include "tools/common/Text.h"

namespace eq {

double shownValueOf(ParameterKind kind, float p) {
    return valueOf(kind, static_cast<double>(p)) + 0.0;
}

std::string rangeText(ParameterKind kind) {
    const ParameterScale& scale = scaleOf(kind);
    const std::string text = fixed(scale.range.lowest, 0) + " to " + fixed(scale.range.highest, 0);
    return *scale.unit == '\0' ? text : text + " " + scale.unit;
}

} // namespace eq
