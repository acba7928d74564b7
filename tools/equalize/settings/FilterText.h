#pragma once

#include <filesystem>
#include <istream>
#include <string>
#include <vector>

namespace eq {

/// A filter in a text of another equalizer.
struct TextFilter {
    enum class Shape { Peak, LowShelf, HighShelf };
    enum class Width { Q, Octaves, Slope };

    int line;
    std::string type; ///< as in the text
    Shape shape;
    double frequency; ///< Hz
    double gain;      ///< dB
    Width widthKind;
    double width;            ///< of the kind `widthKind`; a slope of 1 is 12 dB per octave
    bool isAtCorner = false; ///< `frequency` is the start of a shelf, not its middle
};

/// A point of a GraphicEQ line.
struct CurvePoint {
    double frequency;
    double gain;
};

/// The contents of a settings file of Equalizer APO, REW or AutoEq. The decimal separator may be a point or a comma.
/// Case does not matter.
struct FilterText {
    std::string name;
    std::vector<TextFilter> filters; ///< without filters that are off
    double preamp = 0.0;             ///< dB, the sum of all Preamp lines
    int preampLine = 0;
    std::vector<CurvePoint> curve; ///< sorted by frequency; empty without a GraphicEQ line
    int curveLine = 0;
    std::vector<int> otherLines; ///< lines that are not settings, such as a title

    /// These functions return the contents of a file or stream. `name` is the file's name in messages. They throw
    /// FileError, which names the line, for a wrong line and for a line without an equivalent in this program.
    [[nodiscard]] static FilterText read(const std::filesystem::path& file);
    [[nodiscard]] static FilterText parse(std::istream& stream, const std::string& name);

    /// Returns the start of a message about a line: "NAME:LINE: ".
    [[nodiscard]] std::string origin(int line) const;
};

} // namespace eq
