#pragma once

#include "tools/equalize/settings/Bell.h"
#include "tools/equalize/settings/FilterText.h"

#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace eq {

/// The settings of another equalizer, converted to bells for each rate that a caller needs. Any thread may use the
/// object.
class ImportedFile {
public:
    /// The options of a fit, for a text without an exact form.
    struct Fit {
        int mostBells;
        bool isForced; ///< accepts a bad fit
    };
    /// The result for one rate.
    struct Bells {
        std::vector<Bell> bells;
        double volume = 0.0;                  ///< dB; may be out of the effect's range
        std::optional<double> deviation = {}; ///< the largest deviation of a fit, in dB
        double deviationFrequency = 0.0;      ///< the frequency of this deviation, in Hz
    };
    /// A function that receives messages, such as the quality of a fit.
    using Notice = std::function<void(const std::string&)>;

    /// Reads the file. Without `fit`, only texts with an exact form can be converted. Throws FileError.
    ImportedFile(const std::filesystem::path& file, std::optional<Fit> fit, Notice notice);

    /// Returns the bells for a rate. The reference stays valid while the object exists. Throws FileError if the text
    /// has no exact form, or if the fit is bad.
    [[nodiscard]] const Bells& at(int sampleRate) const;

    [[nodiscard]] bool isFitted() const { return m_fit.has_value(); }
    [[nodiscard]] const FilterText& text() const { return m_text; }

    /// Throws FileError for a volume outside the effect's range.
    void requireVolume(const Bells& bells) const;

private:
    [[nodiscard]] Bells convert(int sampleRate) const;
    [[nodiscard]] static std::string fitText(const Bells& bells, int sampleRate);
    void judge(const Bells& bells) const;

    FilterText m_text;
    std::optional<Fit> m_fit;
    Notice m_notice;
    mutable std::mutex m_inUse;
    mutable std::map<int, Bells> m_bells;
};

} // namespace eq
