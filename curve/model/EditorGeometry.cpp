#include "curve/model/EditorGeometry.h"

#include <cmath>

namespace eq {

namespace {

constexpr double NodeReach = 14.0; ///< the radius in which the pointer hits a node, at a scale factor of 1

} // namespace

FrequencyAxis EditorGeometry::frequencies() const noexcept {
    return {static_cast<double>(layout.plot.x), static_cast<double>(layout.plot.width - 1)};
}

DecibelAxis EditorGeometry::decibels() const noexcept {
    return {static_cast<double>(layout.plot.y), static_cast<double>(layout.plot.height), range};
}

DecibelAxis EditorGeometry::volume() const noexcept {
    return {static_cast<double>(layout.track.y), static_cast<double>(layout.track.height), VolumeRange.highest};
}

Point EditorGeometry::nodeOf(const EditorModel& model, int band) const noexcept {
    return {frequencies().xOf(model.limitedValue(frequencyIndex(band))),
            decibels().yOf(model.limitedValue(gainIndex(band)))};
}

EditorTarget EditorGeometry::at(int x, int y, const EditorModel& model, EditorTarget focus) const noexcept {
    EditorTarget nearest;
    double least = NodeReach * layout.scale;
    for (int band = 0; band < BandCount; ++band) {
        const Point node = nodeOf(model, band);
        const double distance = std::hypot(x + 0.5 - node.x, y + 0.5 - node.y);
        if (distance > NodeReach * layout.scale) continue;
        if (focus == nodeTarget(band)) return focus;
        if (distance > least) continue;
        least = distance;
        nearest = nodeTarget(band);
    }
    if (nearest.kind != TargetKind::None) return nearest;
    if (layout.bypass.contains(x, y)) return BypassTarget;
    if (layout.volume.contains(x, y)) return VolumeTarget;
    for (int i = 0; i < ParameterCount; ++i)
        if (layout.fields[static_cast<std::size_t>(i)].contains(x, y)) return fieldTarget(i);
    return {};
}

} // namespace eq
