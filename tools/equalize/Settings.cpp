#include "tools/equalize/Settings.h"

#include "parameters/UnitText.h"
#include "support/AsciiText.h"
#include "tools/common/Errors.h"
#include "tools/common/Printable.h"
#include "tools/common/Text.h"
#include "tools/equalize/settings/RoundedText.h"
#include "tools/equalize/settings/TargetResponse.h"

#include <algorithm>
#include <cerrno>
#include <fstream>

namespace eq {
namespace {

constexpr std::string_view NormalisedPrefix = "parameter";

/// Returns a value in the parameter's unit. Throws UsageError for a value outside the range. `requireReach` checks
/// frequencies later, because their range depends on the rate.
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

/// Returns the rate for which the imported bells are converted. Without the correction, this is the rate for which the
/// effect designs its filters.
int rateOfImport(const FrequencyMap& frequencies) {
    return frequencies.isCorrected() ? frequencies.sampleRate() : static_cast<int>(DesignRate);
}

/// Returns the value of an imported parameter as text, with the fewest digits from which `resolve` computes the same
/// normalised value.
std::string presetNumber(ParameterKind kind, float p, const FrequencyMap& frequencies) {
    const bool isFrequency = kind == ParameterKind::Frequency;
    const double nominal = shownValueOf(kind, p);
    const double value = isFrequency && frequencies.isCorrected() ? frequencies.landing(nominal) : nominal;
    return roundedText(value, [&](double rounded) {
        return normalisedOf(kind, isFrequency ? frequencies.toNominal(rounded) : rounded) == p;
    });
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
        // Some editors write this mark at the start of a file.
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
    throw FileError(origin + "there is no setting " + quoted(name) + "; --save-preset writes all names");
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

/// Returns the frequency of a band. A band with a gain in dB but without a frequency has its default frequency, which
/// is corrected for the rate. Returns nothing for another band without a frequency. Such a band is inaudible, or
/// its gain is a normalised setting. Normalised settings are not corrected.
std::optional<Settings::Wish> Settings::frequencyWish(int band) const {
    const std::optional<Wish>& frequency = at(indexOf(ParameterKind::Frequency, band));
    if (frequency) return frequency;
    const std::optional<Wish>& gain = at(indexOf(ParameterKind::Gain, band));
    if (!gain || gain->normalised || gain->value == 0.0) return std::nullopt;
    return Wish{Parameters[indexOf(ParameterKind::Frequency, band)].defaultValue, false, gain->origin, true};
}

bool Settings::isEmpty() const {
    return m_import == nullptr &&
           std::ranges::none_of(m_wishes, [](const std::optional<Wish>& wish) { return wish.has_value(); });
}

bool Settings::dependsOnRate() const {
    if (m_import != nullptr) return true;
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

const ImportedFile::Bells& Settings::importedAt(const FrequencyMap& frequencies) const {
    return m_import->at(rateOfImport(frequencies));
}

Settings::Series Settings::resolveImport(const FrequencyMap& frequencies) const {
    Series series(1);
    if (m_import == nullptr) return series;
    const ImportedFile::Bells& imported = importedAt(frequencies);
    if (!at(VolumeIndex)) {
        m_import->requireVolume(imported);
        series.front()[VolumeIndex] = normalisedOf(ParameterKind::Volume, imported.volume);
    }
    for (std::size_t bell = 0; bell < imported.bells.size(); ++bell) {
        const auto [frequency, gain, q] = imported.bells[bell];
        const int band = static_cast<int>(bell % BandCount) + 1;
        if (bell / BandCount == series.size()) series.emplace_back();
        const auto set = [&](ParameterKind kind, double value) {
            series.back()[static_cast<std::size_t>(indexOf(kind, band))] = normalisedOf(kind, value);
        };
        set(ParameterKind::Frequency, frequencies.toNominal(frequency));
        set(ParameterKind::Gain, gain);
        set(ParameterKind::Q, q);
    }
    return series;
}

std::function<double(double)> Settings::fitTarget(const FrequencyMap& frequencies, double volume) const {
    if (m_import == nullptr || !m_import->isFitted()) return {};
    // The level is the preamp of the file, plus the difference between the volume and the imported volume.
    const double level = m_import->text().preamp + volume - importedAt(frequencies).volume;
    const int designRate = rateOfImport(frequencies);
    // Without the correction, the bells are heard at frequencies multiplied by this factor, so scale the target, too.
    const double stretch = static_cast<double>(frequencies.sampleRate()) / designRate;
    return [response = TargetResponse(m_import->text(), designRate), level, stretch](double frequency) {
        return response.decibelsAt(frequency / stretch) + level;
    };
}

Settings::Series Settings::resolve(const FrequencyMap& frequencies) const {
    Series series = resolveImport(frequencies);
    Resolved& resolved = series.front();
    for (int index = 0; index < ParameterCount; ++index) {
        const Parameter& parameter = Parameters[index];
        const bool isFrequency = parameter.kind == ParameterKind::Frequency;
        const std::optional<Wish> wish = isFrequency ? frequencyWish(parameter.band) : at(index);
        if (!wish) continue;
        std::optional<float>& value = resolved[static_cast<std::size_t>(index)];
        if (value && wish->isDefault) continue;
        if (wish->normalised) {
            value = static_cast<float>(wish->value);
        } else if (isFrequency) {
            requireReach(parameter.band, *wish, frequencies);
            value = normalisedOf(parameter.kind, frequencies.toNominal(wish->value));
        } else {
            value = normalisedOf(parameter.kind, wish->value);
        }
    }
    return series;
}

std::string Settings::presetText(const FrequencyMap& frequencies) const {
    const Series imported = resolveImport(frequencies);
    if (imported.size() > 1)
        throw UsageError("--save-preset: a preset has " + std::to_string(BandCount) +
                         " bands, but the imported file needs " + std::to_string(importedAt(frequencies).bells.size()) +
                         "; --fit --bands " + std::to_string(BandCount) + " approximates the file with " +
                         std::to_string(BandCount));
    std::string text = "# Settings for equalize. A setting that is missing or begins with # has its default value.\n"
                       "# volume " +
                       rangeText(ParameterKind::Volume) + ", freq " + rangeText(ParameterKind::Frequency) + ", gain " +
                       rangeText(ParameterKind::Gain) + ", q " + rangeText(ParameterKind::Q) + ".\n";
    if (m_import != nullptr)
        text += "# From " + printable(m_import->text().name) + ", for a sampling rate of " +
                std::to_string(frequencies.sampleRate()) + " Hz.\n";
    for (int index = 0; index < ParameterCount; ++index) {
        const Parameter& parameter = Parameters[index];
        const std::optional<Wish>& wish = at(index);
        const std::optional<float> importedValue = imported.front()[static_cast<std::size_t>(index)];
        if (!wish && importedValue)
            text += presetNameOf(parameter) + " = " + presetNumber(parameter.kind, *importedValue, frequencies) + "\n";
        else if (wish && wish->normalised)
            text += std::string(NormalisedPrefix) + std::to_string(index) + " = " + shortest(wish->value) + "  # " +
                    presetNameOf(parameter) + ", normalised: 0 is the top of its range, 1 the bottom\n";
        else
            text += (wish ? "" : "# ") + presetNameOf(parameter) + " = " +
                    shortest(wish ? wish->value : parameter.defaultValue) + "\n";
    }
    return text;
}

} // namespace eq
