#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace eq {

/// The style of a line, as values of SVG attributes.
struct Pen {
    std::string_view colour;
    std::string_view width;
    std::string_view dashes;
};

/// A point of a curve, in Hz and dB.
struct ChartPoint {
    double frequency;
    double decibels;
};
using ChartCurve = std::vector<ChartPoint>;

/// An SVG picture of frequency responses from 20 Hz to 20 kHz, with space for a legend of four rows below. The vertical
/// scale contains every curve.
class ResponseChart {
public:
    /// Returns the frequencies in Hz at which a curve needs points. All are below half of `sampleRate`.
    [[nodiscard]] static std::vector<double> frequencies(int sampleRate);

    void addCurve(ChartCurve curve, const Pen& pen) { m_curves.push_back({std::move(curve), pen}); }

    /// Adds a short piece of a line, and its name, to the legend. `column` is 0 or 1; rows begin at 0.
    void addLegend(int column, int row, const Pen& pen, std::string_view name);
    /// Adds a text to the legend. Its right end is `distance` pixels after the start of its column.
    void addLegendCell(int column, int row, double distance, std::string_view text);

    /// Returns the complete SVG document.
    [[nodiscard]] std::string svg(std::string_view title) const;

    /// Returns a value in dB with its sign. The sign of a negative value is U+2212.
    [[nodiscard]] static std::string decibelText(double decibels, int decimals);

private:
    struct PennedCurve {
        ChartCurve points;
        Pen pen;
    };
    std::vector<PennedCurve> m_curves;
    std::string m_legend;
};

} // namespace eq
