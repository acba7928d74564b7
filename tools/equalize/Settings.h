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

/// The settings that the user wants, from a preset, an imported file and the command line. A later setting of a
/// parameter replaces an earlier one. A parameter without a setting has the default of the effect.
///
/// Frequencies are in Hz as heard. Functions with a `FrequencyMap` convert the frequencies for the rate of the sound.
class Settings {
public:
    /// Adds the settings of a preset file. Throws FileError, which names the file and the wrong line.
    void readPreset(const std::filesystem::path& file);

    /// These functions add the argument of --volume, --band or --set. They throw UsageError, which names the permitted
    /// range or form.
    void setVolume(std::string_view decibels);
    void setBand(std::string_view description);       ///< "N:freq=HZ,gain=DB,q=Q"; parts may be missing
    void setNormalised(std::string_view description); ///< "INDEX=P"

    /// Sets the imported file. Its bells set all parameters that have no other setting. Bells after the fourth
    /// need further effects in series.
    void setImport(std::shared_ptr<const ImportedFile> import) { m_import = std::move(import); }
    /// Returns the imported file, or null.
    [[nodiscard]] const ImportedFile* import() const { return m_import.get(); }

    /// The normalised values for one effect. A parameter without a value keeps the effect's default.
    using Resolved = std::array<std::optional<float>, ParameterCount>;
    /// The values for the effects in series: one effect, or several for an imported file.
    using Series = std::vector<Resolved>;

    /// Returns the normalised values for the effects. Throws FileError if a frequency of a preset is out of reach at
    /// this rate, and UsageError if a frequency of the command line is. Throws FileError if the imported file cannot be
    /// converted at this rate.
    [[nodiscard]] Series resolve(const FrequencyMap& frequencies) const;

    /// Returns the target of a fit to an imported file: a function that returns dB at a frequency in Hz. `volume` is
    /// the volume of the effect in dB. Returns an empty function without a fit.
    [[nodiscard]] std::function<double(double)> fitTarget(const FrequencyMap& frequencies, double volume) const;

    /// Returns true if there are no settings and no imported file.
    [[nodiscard]] bool isEmpty() const;

    /// Returns true if the rate of the sound matters, because the settings contain a frequency in Hz. Default and
    /// imported frequencies count, too.
    [[nodiscard]] bool dependsOnRate() const;

    /// Returns the frequencies that were set as normalised values, as heard: "band2.freq at 688.43 Hz". Normalised
    /// values are not corrected for the rate. Returns an empty text without such frequencies.
    [[nodiscard]] std::string uncorrectedText(const FrequencyMap& frequencies) const;

    /// Returns the text of a preset that restores these settings. Parameters without a setting are in comments. Bells
    /// of an imported file are converted for the rate of `frequencies`. Throws UsageError if the imported file needs
    /// more bands than a preset has. Throws FileError as `resolve` does.
    [[nodiscard]] std::string presetText(const FrequencyMap& frequencies) const;

private:
    struct Wish {
        double value;
        bool normalised;    ///< `value` is normalised, not in the parameter's unit
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
