#pragma once

#include <filesystem>
#include <istream>
#include <string>
#include <vector>

namespace eq {

/// A filter of a text that another equalizer reads.
struct TextFilter {
    enum class Shape { Peak, LowShelf, HighShelf };
    enum class Width { Q, Octaves, Slope };

    int line;
    std::string type; ///< as the text names it
    Shape shape;
    double frequency; ///< Hz
    double gain;      ///< dB
    Width widthKind;
    double width;            ///< a slope is 1 for 12 dB per octave
    bool isAtCorner = false; ///< the frequency of a shelf is where it begins, not its middle
};

/// A point of a GraphicEQ line.
struct CurvePoint {
    double frequency;
    double gain;
};

/// The text of Equalizer APO, of REW and of AutoEq. Numbers may have a comma for the point; upper and lower case are
/// the same.
struct FilterText {
    std::string name;
    std::vector<TextFilter> filters; ///< those that are on
    double preamp = 0.0;             ///< dB, the sum of all lines
    int preampLine = 0;
    std::vector<CurvePoint> curve; ///< by frequency; empty without a GraphicEQ line
    int curveLine = 0;
    std::vector<int> otherLines; ///< lines with text that is no setting, such as a title

    /// Throws FileError, which names the line, for a line that is wrong or that has no counterpart here.
    [[nodiscard]] static FilterText read(const std::filesystem::path& file);
    [[nodiscard]] static FilterText parse(std::istream& stream, const std::string& name);

    /// "NAME:LINE: "
    [[nodiscard]] std::string origin(int line) const;
};

} // namespace eq
