#pragma once

#include "curve/model/EditorLayout.h"
#include "curve/model/EditorModel.h"
#include "curve/model/PlotAxes.h"

namespace eq {

struct Point {
    double x = 0.0;
    double y = 0.0;
};

/// The layout together with the axes. It computes the position of each value, and finds the part at a position.
struct EditorGeometry {
    EditorLayout layout;
    double range = 12.0; ///< dB at the top of the plot

    [[nodiscard]] FrequencyAxis frequencies() const noexcept;
    [[nodiscard]] DecibelAxis decibels() const noexcept;
    /// The axis of the volume's slider.
    [[nodiscard]] DecibelAxis volume() const noexcept;

    /// Returns the centre of a band's node. `band` is 0 to 3.
    [[nodiscard]] Point nodeOf(const EditorModel& model, int band) const noexcept;
    /// Returns the part of the editor at a position of the window. If nodes overlap there, returns the node `focus` if
    /// it is one of these nodes, or else the nearest node.
    [[nodiscard]] EditorTarget at(int x, int y, const EditorModel& model, EditorTarget focus) const noexcept;
};

} // namespace eq
