#include "tools/equalize/plot/ResponseChart.h"

#include "parameters/ParameterTable.h"
#include "tools/common/Text.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace eq {
namespace {

// Sizes and positions in the picture, in CSS pixels.
constexpr double Width = 760.0;
constexpr double Height = 528.0;
constexpr double Left = 72.0;
constexpr double Right = Width - 24.0;
constexpr double Top = 56.0;
constexpr double Bottom = 384.0;
constexpr double LegendTop = 456.0;
constexpr double LegendRowHeight = 22.0;
constexpr double LegendColumnWidth = 350.0;

constexpr double LowestFrequency = FrequencyRange.lowest;
constexpr double HighestFrequency = FrequencyRange.highest;
constexpr int PointsPerCurve = 600;

std::string number(double value) {
    return fixed(value, 2);
}

double xOf(double frequency) {
    return Left + (Right - Left) * std::log(frequency / LowestFrequency) / std::log(HighestFrequency / LowestFrequency);
}

std::string line(double x1, double y1, double x2, double y2, std::string_view attributes) {
    return "<line x1=\"" + number(x1) + "\" y1=\"" + number(y1) + "\" x2=\"" + number(x2) + "\" y2=\"" + number(y2) +
           "\" " + std::string(attributes) + "/>\n";
}

std::string text(double x, double y, std::string_view attributes, std::string_view content) {
    return "<text x=\"" + number(x) + "\" y=\"" + number(y) + "\" " + std::string(attributes) + ">" +
           std::string(content) + "</text>\n";
}

std::string stroke(const Pen& pen) {
    return "stroke=\"" + std::string(pen.colour) + "\" stroke-width=\"" + std::string(pen.width) +
           "\" stroke-dasharray=\"" + std::string(pen.dashes) + "\"";
}

/// The vertical axis in dB. Its limits are whole steps, and its range contains every curve and the line of 0 dB.
class DecibelAxis {
public:
    explicit DecibelAxis(const std::vector<ChartCurve>& curves) {
        double lowest = 0.0;
        double highest = 0.0;
        for (const ChartCurve& curve : curves)
            for (const ChartPoint& point : curve) {
                lowest = std::min(lowest, point.decibels);
                highest = std::max(highest, point.decibels);
            }
        constexpr std::array<double, 5> Steps = {1.0, 2.0, 3.0, 6.0, 12.0};
        constexpr int MostSteps = 9;
        constexpr double LeastHeight = 3.0;
        // The margin leaves space for the width of a line, so that no curve covers the frame.
        constexpr double Margin = 0.02;
        const double margin = Margin * std::max(highest - lowest, LeastHeight);
        for (const double step : Steps) {
            m_step = step;
            m_top = static_cast<int>(std::ceil((highest + margin) / step));
            m_bottom = static_cast<int>(std::floor((lowest - margin) / step));
            if (m_top - m_bottom <= MostSteps) break;
        }
        const int least = static_cast<int>(std::ceil(LeastHeight / m_step));
        m_top = std::max(m_top, least);
        m_bottom = std::min(m_bottom, -least);
    }

    [[nodiscard]] double yOf(double decibels) const {
        return Top + (Bottom - Top) * (m_top - decibels / m_step) / (m_top - m_bottom);
    }

    [[nodiscard]] std::string drawing() const {
        std::string result;
        for (int tick = m_bottom; tick <= m_top; ++tick) {
            const double y = yOf(tick * m_step);
            result += line(Left, y, Right, y, tick == 0 ? "stroke=\"#606060\"" : "stroke=\"#d0d0d0\"");
            result += text(Left - 8.0, y + 4.0, "text-anchor=\"end\"", ResponseChart::decibelText(tick * m_step, 0));
        }
        return result;
    }

private:
    double m_step = 1.0;
    int m_top = 0; ///< in steps, as `m_bottom`
    int m_bottom = 0;
};

std::string frequencyAxis() {
    struct Label {
        double frequency;
        std::string_view text;
    };
    constexpr std::array<Label, 10> Labels = {{{20, "20"},
                                               {50, "50"},
                                               {100, "100"},
                                               {200, "200"},
                                               {500, "500"},
                                               {1000, "1k"},
                                               {2000, "2k"},
                                               {5000, "5k"},
                                               {10000, "10k"},
                                               {20000, "20k"}}};
    std::string result;
    for (const int decade : {10, 100, 1000, 10000})
        for (int digit = 1; digit < 10; ++digit) {
            const double frequency = decade * digit;
            if (frequency < LowestFrequency || frequency > HighestFrequency) continue;
            result += line(xOf(frequency), Top, xOf(frequency), Bottom,
                           digit == 1 ? "stroke=\"#a8a8a8\"" : "stroke=\"#e2e2e2\"");
        }
    for (const Label& label : Labels)
        result += text(xOf(label.frequency), Bottom + 18.0, "text-anchor=\"middle\"", label.text);
    return result;
}

std::string polyline(const ChartCurve& curve, const DecibelAxis& axis, const Pen& pen) {
    std::string points;
    for (const ChartPoint& point : curve)
        points += number(xOf(point.frequency)) + "," + number(axis.yOf(point.decibels)) + " ";
    if (!points.empty()) points.pop_back();
    return "<polyline fill=\"none\" stroke-linejoin=\"round\" " + stroke(pen) + " points=\"" + points + "\"/>\n";
}

} // namespace

std::vector<double> ResponseChart::frequencies(int sampleRate) {
    std::vector<double> result;
    for (int i = 0; i < PointsPerCurve; ++i) {
        const double frequency =
            LowestFrequency * std::pow(HighestFrequency / LowestFrequency, i / (PointsPerCurve - 1.0));
        if (frequency * 2.0 < sampleRate) result.push_back(frequency);
    }
    return result;
}

void ResponseChart::addLegend(int column, int row, const Pen& pen, std::string_view name) {
    constexpr double SampleLength = 44.0;
    const double x = Left + column * LegendColumnWidth;
    const double y = LegendTop + row * LegendRowHeight;
    m_legend += line(x, y - 4.0, x + SampleLength, y - 4.0, stroke(pen));
    m_legend += text(x + SampleLength + 10.0, y, "", name);
}

void ResponseChart::addLegendCell(int column, int row, double distance, std::string_view content) {
    m_legend += text(Left + column * LegendColumnWidth + distance, LegendTop + row * LegendRowHeight,
                     "text-anchor=\"end\"", content);
}

/// Replaces the hyphen by a minus sign, because a hyphen is too short.
std::string ResponseChart::decibelText(double decibels, int decimals) {
    std::string result = fixedWithSign(decibels, decimals);
    if (result.front() == '-') result.replace(0, 1, "\u2212");
    return result;
}

std::string ResponseChart::svg(std::string_view title) const {
    std::vector<ChartCurve> curves;
    for (const PennedCurve& curve : m_curves) curves.push_back(curve.points);
    const DecibelAxis axis(curves);
    const std::string name(title);
    std::string svg = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
                      fixed(Width, 0) + "\" height=\"" + fixed(Height, 0) + "\" viewBox=\"0 0 " + fixed(Width, 0) +
                      " " + fixed(Height, 0) + "\" font-family=\"sans-serif\" font-size=\"13\">\n";
    svg += "<title>" + name + "</title>\n<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
    svg += text((Left + Right) / 2.0, 32.0, "text-anchor=\"middle\" font-size=\"17\" font-weight=\"bold\"", name);
    svg += frequencyAxis() + axis.drawing();
    for (const PennedCurve& curve : m_curves) svg += polyline(curve.points, axis, curve.pen);
    svg += "<rect x=\"" + number(Left) + "\" y=\"" + number(Top) + "\" width=\"" + number(Right - Left) +
           "\" height=\"" + number(Bottom - Top) + "\" fill=\"none\" stroke=\"#000000\"/>\n";
    svg += text((Left + Right) / 2.0, Bottom + 40.0, "text-anchor=\"middle\"", "Frequency in Hz");
    const double middle = (Top + Bottom) / 2.0;
    svg +=
        text(24.0, middle, "text-anchor=\"middle\" transform=\"rotate(-90 24 " + number(middle) + ")\"", "Gain in dB");
    return svg + m_legend + "</svg>\n";
}

} // namespace eq
