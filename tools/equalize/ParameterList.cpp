#include "tools/equalize/ParameterList.h"

#include "tools/common/Printable.h"
#include "tools/common/Text.h"
#include "tools/equalize/EffectInstance.h"

#include <algorithm>
#include <vector>

namespace eq {
namespace {

struct Row {
    int effect; ///< from 1 on
    int index;
    std::string symbol;
    std::string name;
    std::string unit;
    ValueRange range;
    std::string rangeText;
    double p;
    double value;
};

void addRows(std::vector<Row>& rows, const EffectInstance& effect, int number, const FrequencyMap& frequencies) {
    const NormalisedValues values = effect.parameters();
    for (int index = 0; index < ParameterCount; ++index) {
        const Parameter& parameter = Parameters[index];
        const bool isFrequency = parameter.kind == ParameterKind::Frequency;
        const float p = values[static_cast<std::size_t>(index)];
        const double value = shownValueOf(parameter.kind, p);
        ValueRange range = scaleOf(parameter.kind).range;
        if (isFrequency) range = {frequencies.landing(range.lowest), frequencies.landing(range.highest)};
        rows.push_back({number, index, presetNameOf(parameter), printable(effect.parameterName(index)),
                        scaleOf(parameter.kind).unit, range,
                        isFrequency ? frequencies.landingText() : rangeText(parameter.kind), static_cast<double>(p),
                        isFrequency ? frequencies.landing(value) : value});
    }
}

std::vector<Row> rowsOf(const EffectLibrary& library, const Settings::Series& settings,
                        const FrequencyMap& frequencies) {
    std::vector<Row> rows;
    for (std::size_t i = 0; i < settings.size(); ++i)
        addRows(rows, EffectInstance(library, settings[i], frequencies.sampleRate()), static_cast<int>(i) + 1,
                frequencies);
    return rows;
}

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(text.size(), width), ' ');
    return text;
}

std::string rightAligned(const std::string& text, std::size_t width) {
    return std::string(width - std::min(text.size(), width), ' ') + text;
}

} // namespace

std::string parameterTable(const EffectLibrary& library, const Settings::Series& settings,
                           const FrequencyMap& frequencies) {
    const std::vector<Row> rows = rowsOf(library, settings, frequencies);
    std::size_t rangeWidth = 14;
    for (const Row& row : rows) rangeWidth = std::max(rangeWidth, row.rangeText.size());
    std::string text = "index  preset      effect        " + padded("range", rangeWidth) + "         P  value\n";
    for (const Row& row : rows) {
        if (row.index == 0 && settings.size() > 1)
            text += "effect " + std::to_string(row.effect) + " of " + std::to_string(settings.size()) + ":\n";
        text += rightAligned(std::to_string(row.index), 5) + "  " + padded(row.symbol, 10) + "  " +
                padded(row.name, 12) + "  " + padded(row.rangeText, rangeWidth) + "  " + fixed(row.p, 6) + "  " +
                fixed(row.value, 2) + (row.unit.empty() ? "" : " ") + row.unit + "\n";
    }
    return text;
}

std::string parameterJson(const EffectLibrary& library, const Settings::Series& settings,
                          const FrequencyMap& frequencies) {
    std::string text;
    for (const Row& row : rowsOf(library, settings, frequencies)) {
        text += text.empty() ? "[\n" : ",\n";
        const std::string effect = settings.size() == 1 ? "" : "\"effect\": " + std::to_string(row.effect) + ", ";
        text += "  {" + effect + "\"index\": " + std::to_string(row.index) + ", \"symbol\": " + jsonString(row.symbol) +
                ", \"name\": " + jsonString(row.name) + ", \"unit\": " + jsonString(row.unit) +
                ", \"minimum\": " + shortest(row.range.lowest) + ", \"maximum\": " + shortest(row.range.highest) +
                ", \"p\": " + shortest(row.p) + ", \"value\": " + shortest(row.value) + "}";
    }
    return text + "\n]\n";
}

} // namespace eq
