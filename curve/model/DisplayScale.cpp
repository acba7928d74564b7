#include "curve/model/DisplayScale.h"

#include "support/AsciiText.h"
#include "support/NumberText.h"

#include <algorithm>

namespace eq {

double displayScaleOf(std::string_view resources) noexcept {
    constexpr std::string_view Name = "Xft.dpi:";
    constexpr double DesignDpi = 96.0;
    double scale = 1.0;
    forEachPiece(resources, "\n", [&](std::string_view line) {
        if (!line.starts_with(Name)) return;
        const auto dpi = parseNumber(trim(line.substr(Name.size())));
        if (dpi && *dpi > 0.0) scale = std::clamp(*dpi / DesignDpi, 0.75, 4.0);
    });
    return scale;
}

} // namespace eq
