#include "tools/equalize/Settings.h"

#include "parameters/UnitText.h"
#include "support/AsciiText.h"
#include "tools/common/Errors.h"
#include "tools/common/Text.h"

#include <algorithm>
#include <cerrno>
#include <fstream>

namespace eq {
namespace {

constexpr std::string_view NormalisedPrefix = "parameter";

/// A value in the parameter's unit. Frequencies are only known to be in reach when the rate is.
double parseValue(ParameterKind kind, std::string_view what, std::string_view text) {
    const std::optional<double> value = parseWithUnit(kind, text);
    constexpr ValueRange AnyFrequency = {0.01, 1e6};
    const auto [lowest, highest] = kind == ParameterKind::Frequency ? AnyFrequency : scaleOf(kind).range;
    if (!value || *value < lowest || *value > highest)
        throw UsageError(std::string(what) + ": " + quoted(trimmed(text)) + " is not a number from " + rangeText(kind));
    return *value;
}

std::optional<ParameterKind> bandParameterKind(std::string_view symbol) {
    for (const auto kind : {ParameterKind::Frequency, ParameterKind::Gain, ParameterKind::Q})
        if (symbol == scaleOf(kind).symbol) return kind;
    return std::nullopt;
}

std::optional<int> indexOfName(std::string_view name) {
    for (int index = 0; index < ParameterCount; ++index)
        if (presetNameOf(Parameters[index]) == name) return index;
    return std::nullopt;
}

} // namespace

void Settings::readPreset(const std::filesystem::path& file) {
    std::ifstream stream(file);
    if (!stream) throw systemError(file.string(), errno);
    std::string line;
    for (int number = 1; std::getline(stream, line); ++number) {
        // Some editors begin every file with this mark.
        constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
        if (number == 1 && line.starts_with(ByteOrderMark)) line.erase(0, ByteOrderMark.size());
        readPresetLine(line, file.string() + ":" + std::to_string(number) + ": ");
    }
    if (stream.bad() || !stream.eof()) throw FileError(file.string() + ": cannot be read to its end");
}

void Settings::readPresetLine(std::string_view line, const std::string& origin) {
    const std::string_view content = trimmed(line.substr(0, line.find('#')));
    if (content.empty()) return;
    const std::size_t equals = content.find('=');
    if (equals == std::string_view::npos)
        throw FileError(origin + quoted(content) + " is not of the form name = value");
    const std::string_view name = trimmed(content.substr(0, equals));
    const std::string_view text = content.substr(equals + 1);
    try {
        if (const std::optional<int> index = indexOfName(name)) {
            at(*index) = {parseValue(Parameters[*index].kind, name, text), false, origin};
            return;
        }
        if (name.starts_with(NormalisedPrefix)) {
            if (const std::optional<int> index =
                    parseParameterIndex(name.substr(NormalisedPrefix.size()), ParameterCount)) {
                at(*index) = {parseNormalised(name, text), true, origin};
                return;
            }
        }
    } catch (const UsageError& error) {
        throw FileError(origin + error.what());
    }
    throw FileError(origin + "there is no setting " + quoted(name));
}

void Settings::setVolume(std::string_view decibels) {
    at(VolumeIndex) = {parseValue(ParameterKind::Volume, "--volume", decibels), false, {}};
}

void Settings::setBand(std::string_view description) {
    const std::string what = "--band " + std::string(description);
    const std::size_t colon = description.find(':');
    const std::optional<int> band = parseIndex(trimmed(description.substr(0, colon)));
    if (!band || *band < 1 || *band > BandCount)
        throw UsageError(what + ": the band's number must be 1 to " + std::to_string(BandCount));
    if (colon == std::string_view::npos) throw UsageError(what + ": it must be of the form N:freq=HZ,gain=DB,q=Q");

    forEachPiece(description.substr(colon + 1), ",", [&](std::string_view part) {
        const std::size_t equals = part.find('=');
        const std::optional<ParameterKind> kind = bandParameterKind(trimmed(part.substr(0, equals)));
        if (!kind || equals == std::string_view::npos)
            throw UsageError(what + ": " + quoted(part) + " is none of freq=HZ, gain=DB and q=Q");
        const int index = indexOf(*kind, *band);
        at(index) = {parseValue(*kind, what, part.substr(equals + 1)), false, {}};
    });
}

void Settings::setNormalised(std::string_view description) {
    const NormalisedSetting setting = parseSetting(description, ParameterCount);
    at(setting.index) = {setting.p, true, {}};
}

/// A band that is given a gain in dB, but no frequency, is meant at its default frequency. Other bands are not heard,
/// or are set for the effect as it stands, and are left alone.
std::optional<Settings::Wish> Settings::frequencyWish(int band) const {
    const std::optional<Wish>& frequency = at(indexOf(ParameterKind::Frequency, band));
    if (frequency) return frequency;
    const std::optional<Wish>& gain = at(indexOf(ParameterKind::Gain, band));
    if (!gain || gain->normalised || gain->value == 0.0) return std::nullopt;
    return Wish{Parameters[indexOf(ParameterKind::Frequency, band)].defaultValue, false, gain->origin, true};
}

bool Settings::isEmpty() const {
    return std::ranges::none_of(m_wishes, [](const std::optional<Wish>& wish) { return wish.has_value(); });
}

bool Settings::dependsOnRate() const {
    for (int band = 1; band <= BandCount; ++band) {
        const std::optional<Wish> wish = frequencyWish(band);
        if (wish && !wish->normalised) return true;
    }
    return false;
}

std::string Settings::uncorrectedText(const FrequencyMap& frequencies) const {
    std::string text;
    for (int band = 1; band <= BandCount; ++band) {
        const int index = indexOf(ParameterKind::Frequency, band);
        const std::optional<Wish>& wish = at(index);
        if (!wish || !wish->normalised) continue;
        const double nominal = shownValueOf(ParameterKind::Frequency, static_cast<float>(wish->value));
        text += (text.empty() ? "" : ", ") + presetNameOf(Parameters[index]) + " at " +
                fixed(frequencies.landing(nominal), 2) + " Hz";
    }
    return text;
}

void Settings::requireReach(int band, const Wish& frequency, const FrequencyMap& frequencies) {
    if (frequencies.reaches(frequency.value)) return;
    const std::string message = frequency.origin + "band " + std::to_string(band) + ": " + shortest(frequency.value) +
                                " Hz is out of reach at " + std::to_string(frequencies.sampleRate()) +
                                " Hz; the range is " + frequencies.reachText() +
                                (frequency.isDefault ? "; it is the default, and freq= sets another" : "");
    if (frequency.origin.empty()) throw UsageError(message);
    throw FileError(message);
}

Settings::Resolved Settings::resolve(const FrequencyMap& frequencies) const {
    Resolved resolved;
    for (int index = 0; index < ParameterCount; ++index) {
        const Parameter& parameter = Parameters[index];
        const bool isFrequency = parameter.kind == ParameterKind::Frequency;
        const std::optional<Wish> wish = isFrequency ? frequencyWish(parameter.band) : at(index);
        if (!wish) continue;
        std::optional<float>& value = resolved[static_cast<std::size_t>(index)];
        if (wish->normalised) {
            value = static_cast<float>(wish->value);
        } else if (isFrequency) {
            requireReach(parameter.band, *wish, frequencies);
            value = normalisedOf(parameter.kind, frequencies.toNominal(wish->value));
        } else {
            value = normalisedOf(parameter.kind, wish->value);
        }
    }
    return resolved;
}

std::string Settings::presetText() const {
    std::string text = "# Settings for equalize. A line with # in front, as any that is missing, leaves the default.\n"
                       "# volume " +
                       rangeText(ParameterKind::Volume) + ", freq " + rangeText(ParameterKind::Frequency) + ", gain " +
                       rangeText(ParameterKind::Gain) + ", q " + rangeText(ParameterKind::Q) + ".\n";
    for (int index = 0; index < ParameterCount; ++index) {
        const Parameter& parameter = Parameters[index];
        const std::optional<Wish>& wish = at(index);
        if (wish && wish->normalised)
            text += std::string(NormalisedPrefix) + std::to_string(index) + " = " + shortest(wish->value) + "  # " +
                    presetNameOf(parameter) + ", normalised: 0 is the top of its range, 1 the bottom\n";
        else
            text += (wish ? "" : "# ") + presetNameOf(parameter) + " = " +
                    shortest(wish ? wish->value : parameter.defaultValue) + "\n";
    }
    return text;
}

} // namespace eq
