#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace eq {

/// How a line is drawn.
struct Pen {
    std::string_view colour;
    std::string_view width;
    std::string_view dashes;
};

/// A point of a curve: Hz and dB.
struct ChartPoint {
    double frequency;
    double decibels;
};
using ChartCurve = std::vector<ChartPoint>;

/// An SVG picture of responses from 20 Hz to 20 kHz, with a legend of five rows below. The scale holds every curve.
class ResponseChart {
public:
    /// Returns the frequencies at which curves are drawn, below half the rate.
    [[nodiscard]] static std::vector<double> frequencies(int sampleRate);

    void addCurve(ChartCurve curve, const Pen& pen) { m_curves.push_back({std::move(curve), pen}); }

    /// Adds a sample of a line and its name. The legend has two columns, 0 and 1, and rows from 0 on.
    void addLegend(int column, int row, const Pen& pen, std::string_view name);
    /// Adds a text that ends at a distance from the start of its column.
    void addLegendCell(int column, int row, double distance, std::string_view text);

    [[nodiscard]] std::string svg(std::string_view title) const;

    /// A number with its sign, as a picture shows it.
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
