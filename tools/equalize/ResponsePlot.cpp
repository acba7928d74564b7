#include "tools/equalize/ResponsePlot.h"

#include "tools/common/Text.h"
#include "tools/equalize/Response.h"
#include "tools/equalize/plot/ResponseChart.h"

#include <array>
#include <cmath>
#include <string_view>
#include <utility>

namespace eq {
namespace {

constexpr std::array<Pen, BandCount> BandPens = {{
    {"#0a4f8f", "1.7", "14 5"},
    {"#a03300", "1.9", "2 4"},
    {"#1b6b2f", "1.7", "10 4 2 4"},
    {"#6b2f86", "1.7", "5 3"},
}};
constexpr Pen SumPen = {"#000000", "2.6", "none"};
constexpr Pen OneOfManyPen = {"#6a6a6a", "1.0", "4 2"};
constexpr Pen TargetPen = {"#0a4f8f", "2.2", "10 5"};
constexpr Pen DifferencePen = {"#a03300", "1.9", "2 3"};

using Values = std::vector<NormalisedValues>;

ChartCurve measure(const EffectLibrary& library, const Values& values, int sampleRate) {
    const Response response(library, values, sampleRate);
    ChartCurve curve;
    for (const double frequency : ResponseChart::frequencies(sampleRate))
        curve.push_back({frequency, response.decibelsAt(frequency)});
    return curve;
}

/// Returns the settings of one band: the volume and the gains of all other bands are 0 dB.
NormalisedValues alone(NormalisedValues values, int band) {
    values[VolumeIndex] = normalisedOf(ParameterKind::Volume, 0.0);
    for (int other = 1; other <= BandCount; ++other)
        if (other != band)
            values[static_cast<std::size_t>(indexOf(ParameterKind::Gain, other))] =
                normalisedOf(ParameterKind::Gain, 0.0);
    return values;
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

std::string volumeText(const Values& values) {
    return ResponseChart::decibelText(valueIn(values.front(), ParameterKind::Volume), 1) + " dB";
}

/// Draws each band with its own pen. The legend has two rows with the values of two bands each.
void addBands(ResponseChart& chart, const EffectLibrary& library, const NormalisedValues& values,
              const FrequencyMap& frequencies) {
    for (int band = 1; band <= BandCount; ++band) {
        const Pen& pen = BandPens[static_cast<std::size_t>(band - 1)];
        chart.addCurve(measure(library, {alone(values, band)}, frequencies.sampleRate()), pen);
        const int row = (band - 1) / 2;
        const int column = (band - 1) % 2;
        chart.addLegend(column, row, pen, "Band " + std::to_string(band));
        const double frequency = frequencies.landing(valueIn(values, ParameterKind::Frequency, band));
        chart.addLegendCell(column, row, 176.0, frequencyText(frequency));
        chart.addLegendCell(column, row, 246.0,
                            ResponseChart::decibelText(valueIn(values, ParameterKind::Gain, band), 1) + " dB");
        chart.addLegendCell(column, row, 304.0, "Q " + fixed(valueIn(values, ParameterKind::Q, band), 1));
    }
}

/// Draws the bands of several effects with the same pen, without bands at 0 dB. Returns the number of drawn bands.
int addManyBands(ResponseChart& chart, const EffectLibrary& library, const Values& values, int sampleRate) {
    int bands = 0;
    for (const NormalisedValues& effect : values)
        for (int band = 1; band <= BandCount; ++band) {
            if (valueIn(effect, ParameterKind::Gain, band) == 0.0) continue;
            chart.addCurve(measure(library, {alone(effect, band)}, sampleRate), OneOfManyPen);
            ++bands;
        }
    return bands;
}

/// Draws a target, and the difference between the curve `all` and the target.
void addTarget(ResponseChart& chart, const ChartCurve& all, const PlotTarget& target) {
    ChartCurve wanted;
    ChartCurve difference;
    double largest = 0.0;
    for (const auto& [frequency, decibels] : all) {
        wanted.push_back({frequency, target(frequency)});
        difference.push_back({frequency, decibels - wanted.back().decibels});
        if (std::fabs(difference.back().decibels) > std::fabs(largest)) largest = difference.back().decibels;
    }
    chart.addCurve(std::move(wanted), TargetPen);
    chart.addCurve(std::move(difference), DifferencePen);
    chart.addLegend(0, 0, TargetPen, "Target, with its volume");
    chart.addLegend(1, 0, DifferencePen,
                    "Difference, " + ResponseChart::decibelText(largest, 2) + " dB where it is largest");
}

} // namespace

std::string drawResponse(const EffectLibrary& library, const Values& values, const FrequencyMap& frequencies,
                         const PlotTarget& target) {
    ResponseChart chart;
    const int sampleRate = frequencies.sampleRate();
    ChartCurve all = measure(library, values, sampleRate);
    std::string name = "All bands, volume " + volumeText(values);
    if (target) {
        addTarget(chart, all, target);
        name = "Fit, volume " + volumeText(values);
    } else if (values.size() == 1) {
        addBands(chart, library, values.front(), frequencies);
    } else {
        const int bands = addManyBands(chart, library, values, sampleRate);
        chart.addLegend(0, 0, OneOfManyPen,
                        "Each of " + std::to_string(bands) + " bands in " + std::to_string(values.size()) + " effects");
    }
    chart.addCurve(std::move(all), SumPen);
    chart.addLegend(0, values.size() == 1 && !target ? 2 : 1, SumPen, name);
    return chart.svg("Frequency response at " + std::to_string(sampleRate) + " Hz");
}

} // namespace eq
