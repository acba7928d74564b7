#include "tools/equalize/ResponsePlot.h"

#include "tools/common/Text.h"
#include "tools/equalize/Response.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <vector>

namespace eq {
namespace {

// The picture, in units of a CSS pixel.
constexpr double Width = 760.0;
constexpr double Height = 528.0;
constexpr double Left = 72.0;
constexpr double Right = Width - 24.0;
constexpr double Top = 56.0;
constexpr double Bottom = 384.0;
constexpr double LegendTop = 456.0;

constexpr double LowestFrequency = FrequencyRange.lowest;
constexpr double HighestFrequency = FrequencyRange.highest;
constexpr int PointsPerCurve = 600;

struct Pen {
    std::string_view colour;
    std::string_view width;
    std::string_view dashes;
};

constexpr std::array<Pen, BandCount> BandPens = {{
    {"#0a4f8f", "1.7", "14 5"},
    {"#a03300", "1.9", "2 4"},
    {"#1b6b2f", "1.7", "10 4 2 4"},
    {"#6b2f86", "1.7", "5 3"},
}};
constexpr Pen SumPen = {"#000000", "2.6", "none"};

struct Point {
    double frequency;
    double decibels;
};
using Curve = std::vector<Point>;

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

/// Hyphens are too short for a minus sign.
std::string decibelText(double decibels, int decimals) {
    std::string result = fixedWithSign(decibels, decimals);
    if (result.front() == '-') result.replace(0, 1, "\u2212");
    return result;
}

/// The vertical axis: whole steps that hold every curve and the line of 0 dB.
class DecibelAxis {
public:
    explicit DecibelAxis(const std::vector<Curve>& curves) {
        double lowest = 0.0;
        double highest = 0.0;
        for (const Curve& curve : curves)
            for (const Point& point : curve) {
                lowest = std::min(lowest, point.decibels);
                highest = std::max(highest, point.decibels);
            }
        constexpr std::array<double, 5> Steps = {1.0, 2.0, 3.0, 6.0, 12.0};
        constexpr int MostSteps = 9;
        constexpr double LeastHeight = 3.0;
        // Room for the line's width, so that no curve lies on the frame.
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
            result += text(Left - 8.0, y + 4.0, "text-anchor=\"end\"", decibelText(tick * m_step, 0));
        }
        return result;
    }

private:
    double m_step = 1.0;
    int m_top = 0; ///< in steps
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

Curve measure(const EffectLibrary& library, const NormalisedValues& values, int sampleRate) {
    const Response response(library, values, sampleRate);
    Curve curve;
    for (int i = 0; i < PointsPerCurve; ++i) {
        const double frequency =
            LowestFrequency * std::pow(HighestFrequency / LowestFrequency, i / (PointsPerCurve - 1.0));
        if (frequency * 2.0 < sampleRate) curve.push_back({frequency, response.decibelsAt(frequency)});
    }
    return curve;
}

/// The settings with the volume and all other bands' gains at 0 dB.
NormalisedValues alone(NormalisedValues values, int band) {
    values[VolumeIndex] = normalisedOf(ParameterKind::Volume, 0.0);
    for (int other = 1; other <= BandCount; ++other)
        if (other != band)
            values[static_cast<std::size_t>(indexOf(ParameterKind::Gain, other))] =
                normalisedOf(ParameterKind::Gain, 0.0);
    return values;
}

std::string polyline(const Curve& curve, const DecibelAxis& axis, const Pen& pen) {
    std::string points;
    for (const Point& point : curve)
        points += number(xOf(point.frequency)) + "," + number(axis.yOf(point.decibels)) + " ";
    if (!points.empty()) points.pop_back();
    return "<polyline fill=\"none\" stroke-linejoin=\"round\" " + stroke(pen) + " points=\"" + points + "\"/>\n";
}

std::string frequencyText(double frequency) {
    const int decimals = frequency < 100.0 ? 1 : 0;
    std::string result = fixed(frequency, decimals);
    if (result.ends_with(".0")) result.resize(result.size() - 2);
    return result + " Hz";
}

double valueIn(const NormalisedValues& values, ParameterKind kind, int band = 0) {
    return shownValueOf(kind, values[static_cast<std::size_t>(indexOf(kind, band))]);
}

/// Two rows of two bands, and the sum beside them.
std::string legend(const NormalisedValues& values, const FrequencyMap& frequencies) {
    constexpr double RowHeight = 22.0;
    constexpr double ColumnWidth = 350.0;
    constexpr double SampleLength = 44.0;
    std::string result;
    const auto entry = [&](double x, double y, const Pen& pen, std::string_view name) {
        result += line(x, y - 4.0, x + SampleLength, y - 4.0, stroke(pen));
        result += text(x + SampleLength + 10.0, y, "", name);
    };
    const auto cell = [&](double x, double y, std::string_view content) {
        result += text(x, y, "text-anchor=\"end\"", content);
    };
    for (int band = 1; band <= BandCount; ++band) {
        const int row = (band - 1) / 2;
        const int column = (band - 1) % 2;
        const double x = Left + column * ColumnWidth;
        const double y = LegendTop + row * RowHeight;
        entry(x, y, BandPens[static_cast<std::size_t>(band - 1)], "Band " + std::to_string(band));
        cell(x + 176.0, y, frequencyText(frequencies.landing(valueIn(values, ParameterKind::Frequency, band))));
        cell(x + 246.0, y, decibelText(valueIn(values, ParameterKind::Gain, band), 1) + " dB");
        cell(x + 304.0, y, "Q " + fixed(valueIn(values, ParameterKind::Q, band), 1));
    }
    const double y = LegendTop + 2.0 * RowHeight;
    entry(Left, y, SumPen, "All bands, volume " + decibelText(valueIn(values, ParameterKind::Volume), 1) + " dB");
    return result;
}

} // namespace

std::string drawResponse(const EffectLibrary& library, const NormalisedValues& values,
                         const FrequencyMap& frequencies) {
    std::vector<Curve> curves;
    for (int band = 1; band <= BandCount; ++band)
        curves.push_back(measure(library, alone(values, band), frequencies.sampleRate()));
    curves.push_back(measure(library, values, frequencies.sampleRate()));
    const DecibelAxis axis(curves);

    const std::string title = "Frequency response at " + std::to_string(frequencies.sampleRate()) + " Hz";
    std::string svg = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
                      fixed(Width, 0) + "\" height=\"" + fixed(Height, 0) + "\" viewBox=\"0 0 " + fixed(Width, 0) +
                      " " + fixed(Height, 0) + "\" font-family=\"sans-serif\" font-size=\"13\">\n";
    svg += "<title>" + title + "</title>\n<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
    svg += text((Left + Right) / 2.0, 32.0, "text-anchor=\"middle\" font-size=\"17\" font-weight=\"bold\"", title);
    svg += frequencyAxis() + axis.drawing();
    for (std::size_t band = 0; band < BandPens.size(); ++band) svg += polyline(curves[band], axis, BandPens[band]);
    svg += polyline(curves.back(), axis, SumPen);
    svg += "<rect x=\"" + number(Left) + "\" y=\"" + number(Top) + "\" width=\"" + number(Right - Left) +
           "\" height=\"" + number(Bottom - Top) + "\" fill=\"none\" stroke=\"#000000\"/>\n";
    svg += text((Left + Right) / 2.0, Bottom + 40.0, "text-anchor=\"middle\"", "Frequency in Hz");
    const double middle = (Top + Bottom) / 2.0;
    svg +=
        text(24.0, middle, "text-anchor=\"middle\" transform=\"rotate(-90 24 " + number(middle) + ")\"", "Gain in dB");
    svg += legend(values, frequencies);
    return svg + "</svg>\n";
}

} // namespace eq
