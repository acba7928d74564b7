#pragma once

#include "curve/model/EditorLayout.h"
#include "curve/model/EditorModel.h"
#include "curve/model/PlotAxes.h"

namespace eq {

struct Point {
    double x = 0.0;
    double y = 0.0;
};

/// The layout together with the axes: where each value is shown, and what is at a place.
struct EditorGeometry {
    EditorLayout layout;
    double range = 12.0; ///< dB at the top of the plot

    [[nodiscard]] FrequencyAxis frequencies() const noexcept;
    [[nodiscard]] DecibelAxis decibels() const noexcept;
    /// The axis of the volume's slider.
    [[nodiscard]] DecibelAxis volume() const noexcept;

    /// Returns the centre of a band's node. `band` is 0 to 3.
    [[nodiscard]] Point nodeOf(const EditorModel& model, int band) const noexcept;
    /// Returns the part at a place of the window. Of overlapping nodes it is `focus`, or else the nearest.
    [[nodiscard]] EditorTarget at(int x, int y, const EditorModel& model, EditorTarget focus) const noexcept;
};

} // namespace eq
