#pragma once

#include "engine/ParameterArray.h"

namespace eq {

/// A part of the editor that the pointer or the keyboard can be on.
enum class TargetKind { None, Node, Volume, Field, Bypass };

struct EditorTarget {
    TargetKind kind = TargetKind::None;
    int index = 0; ///< of a node: the band, 0 to 3. Of a field: the parameter

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

/// Returns the next target of the keyboard in the order node 1 to 4, volume, and bypass where the format has one; from
/// the last it continues at the first. With `backward` in the opposite order.
constexpr EditorTarget nextFocus(EditorTarget focus, bool backward, bool hasBypass) noexcept {
    const int count = BandCount + 1 + (hasBypass ? 1 : 0);
    const int place = focus.kind == TargetKind::Node     ? focus.index
                      : focus.kind == TargetKind::Volume ? BandCount
                                                         : BandCount + 1;
    const int next = (place + (backward ? count - 1 : 1)) % count;
    return next < BandCount ? nodeTarget(next) : next == BandCount ? VolumeTarget : BypassTarget;
}

/// Returns the target of the keyboard to which a parameter belongs. `parameter` has the host's index.
constexpr EditorTarget focusOfParameter(int parameter) noexcept {
    return parameter == VolumeIndex ? VolumeTarget : nodeTarget((parameter - 1) % BandCount);
}

} // namespace eq
