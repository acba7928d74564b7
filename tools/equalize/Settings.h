#pragma once

#include "tools/equalize/FrequencyMap.h"
#include "tools/equalize/ParameterText.h"
#include "tools/equalize/settings/ImportedFile.h"

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace eq {

/// What the user asks of the parameters, gathered from a preset and from the command line; what is said later
/// replaces what was said before. A parameter of which nothing is said stays as a new instance of the effect has it.
///
/// Frequencies are those that the user wants to hear: the rate of the sound comes in with `resolve` alone.
class Settings {
public:
    /// Takes all lines of a preset. Throws FileError, which names file and line.
    void readPreset(const std::filesystem::path& file);

    /// The arguments of the options of the same names. Throw UsageError, which tells the range.
    void setVolume(std::string_view decibels);
    void setBand(std::string_view description);       ///< "N:freq=HZ,gain=DB,q=Q", any of the three
    void setNormalised(std::string_view description); ///< "INDEX=P"

    /// Takes the bells of a file for all values that nothing else sets. Bells after the fourth are in further effects.
    void setImport(std::shared_ptr<const ImportedFile> import) { m_import = std::move(import); }
    /// Null without an imported file.
    [[nodiscard]] const ImportedFile* import() const { return m_import.get(); }

    using Resolved = std::array<std::optional<float>, ParameterCount>;
    /// The normalised values for the effects in series: one, or more for an imported file.
    using Series = std::vector<Resolved>;

    /// The normalised values to give to the effects. Throws UsageError, or FileError when a preset asked for it, for a
    /// frequency that cannot be reached; FileError for an imported file that has no bells at this rate.
    [[nodiscard]] Series resolve(const FrequencyMap& frequencies) const;

    /// Returns the response in dB, at a frequency in Hz, that a fit to an imported file aims at with this volume in dB;
    /// no function without a fit.
    [[nodiscard]] std::function<double(double)> fitTarget(const FrequencyMap& frequencies, double volume) const;

    /// True if nothing was asked of any parameter.
    [[nodiscard]] bool isEmpty() const;

    /// True if `resolve` has to take the rate of the sound into account.
    [[nodiscard]] bool dependsOnRate() const;

    /// Returns where the frequencies are heard that were given as normalised values, which are not corrected for the
    /// rate: "band2.freq at 688.43 Hz". Empty without such frequencies.
    [[nodiscard]] std::string uncorrectedText(const FrequencyMap& frequencies) const;

    /// The text of a preset that brings back just these settings and shows all names. Bells of an imported file are
    /// those at the rate of `frequencies`. Throws UsageError if there are too many of them.
    [[nodiscard]] std::string presetText(const FrequencyMap& frequencies) const;

private:
    struct Wish {
        double value;
        bool normalised;    ///< for the effect as it stands, not in the parameter's unit
        std::string origin; ///< "FILE:LINE: " of a preset; empty for the command line
        bool isDefault = false;
    };

    [[nodiscard]] std::optional<Wish>& at(int index) { return m_wishes[static_cast<std::size_t>(index)]; }
    [[nodiscard]] const std::optional<Wish>& at(int index) const { return m_wishes[static_cast<std::size_t>(index)]; }

    void readPresetLine(std::string_view line, const std::string& origin);
    [[nodiscard]] std::optional<Wish> frequencyWish(int band) const;
    static void requireReach(int band, const Wish& frequency, const FrequencyMap& frequencies);

    [[nodiscard]] const ImportedFile::Bells& importedAt(const FrequencyMap& frequencies) const;
    [[nodiscard]] Series resolveImport(const FrequencyMap& frequencies) const;

    std::array<std::optional<Wish>, ParameterCount> m_wishes;
    std::shared_ptr<const ImportedFile> m_import;
};

} // namespace eq
