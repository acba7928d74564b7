#pragma once

#include "curve/model/EditorSize.h"
#include "curve/model/EditorTarget.h"
#include "parameters/ParameterTable.h"

#include <array>

namespace eq {

struct Rect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    [[nodiscard]] int right() const noexcept { return x + width; }
    [[nodiscard]] int bottom() const noexcept { return y + height; }
    [[nodiscard]] bool contains(int px, int py) const noexcept {
        return px >= x && px < right() && py >= y && py < bottom();
    }
    friend bool operator==(const Rect&, const Rect&) = default;
};

/// The width that a kind of read-out needs, in pixels.
struct FieldNeed {
    int value = 0;   ///< the widest value, which is never cut
    int caption = 0; ///< the label, which ends with an ellipsis if there is no room
};
/// One need per kind, in the order of ParameterKind.
using FieldNeeds = std::array<FieldNeed, ParameterKindCount>;

/// The positions of the editor's parts, in pixels of the window.
///
///     +---------------------------+--------+
///     | graph                     | volume |
///     |   plot                    |  track |
///     +------+------+------+------+--------+
///     | card | card | card | card |  card  |    a narrow window has the four cards of the bands in two rows
///     +------+------+------+------+--------+
struct EditorLayout {
    static constexpr int VolumeCard = BandCount;

    double scale = 1.0; ///< pixels per unit of the design
    Rect window;
    Rect graph;  ///< the plot, its labels and its nodes
    Rect plot;   ///< the area of the axes
    Rect volume; ///< the column of the slider
    Rect track;  ///< from the top of the volume's range to its bottom
    Rect bypass; ///< empty in a format without a bypass
    std::array<Rect, BandCount + 1> cards;
    std::array<Rect, ParameterCount> fields; ///< the read-outs, by the parameter's index
};

/// Returns the layout of a window. A window below the least size gets the layout of the least size.
[[nodiscard]] EditorLayout layoutOf(int width, int height, double scale, const FieldNeeds& needs, bool hasBypass);

} // namespace eq
