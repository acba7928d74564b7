#pragma once

#include "engine/ParameterArray.h"

namespace eq {

/// A part of the editor that can be below the pointer or have the keyboard focus.
enum class TargetKind { None, Node, Volume, Field, Bypass };

struct EditorTarget {
    TargetKind kind = TargetKind::None;
    int index = 0; ///< the band of a node, 0 to 3, or the parameter of a field

    friend bool operator==(const EditorTarget&, const EditorTarget&) = default;
};

inline constexpr EditorTarget VolumeTarget{TargetKind::Volume};
inline constexpr EditorTarget BypassTarget{TargetKind::Bypass};

constexpr EditorTarget nodeTarget(int band) noexcept {
    return {TargetKind::Node, band};
}
constexpr EditorTarget fieldTarget(int parameter) noexcept {
    return {TargetKind::Field, parameter};
}

/// Returns the next target of the keyboard focus. The order is nodes 1 to 4, volume, and bypass if the format has one.
/// The first target follows the last target. `backward` reverses the order.
constexpr EditorTarget nextFocus(EditorTarget focus, bool backward, bool hasBypass) noexcept {
    const int count = BandCount + 1 + (hasBypass ? 1 : 0);
    const int place = focus.kind == TargetKind::Node     ? focus.index
                      : focus.kind == TargetKind::Volume ? BandCount
                                                         : BandCount + 1;
    const int next = (place + (backward ? count - 1 : 1)) % count;
    return next < BandCount ? nodeTarget(next) : next == BandCount ? VolumeTarget : BypassTarget;
}

/// Returns the target of the keyboard focus for a parameter: a band's node, or the volume. `parameter` is the host's
/// index.
constexpr EditorTarget focusOfParameter(int parameter) noexcept {
    return parameter == VolumeIndex ? VolumeTarget : nodeTarget((parameter - 1) % BandCount);
}

} // namespace eq
