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

/// A text of another equalizer as bells, at each rate that is asked for. Any thread may use it.
class ImportedFile {
public:
    /// How to come near to a text that has no exact form.
    struct Fit {
        int mostBells;
        bool isForced; ///< takes also a bad fit
    };
    /// What the bells are, and the volume that belongs to them.
    struct Bells {
        std::vector<Bell> bells;
        double volume = 0.0;                  ///< dB; may be out of the effect's range
        std::optional<double> deviation = {}; ///< of a fit, the largest in dB
        double deviationFrequency = 0.0;
    };
    /// Receives a sentence on the quality of each fit.
    using Notice = std::function<void(const std::string&)>;

    /// Reads the file. Throws FileError.
    ImportedFile(const std::filesystem::path& file, std::optional<Fit> fit, Notice notice);

    /// The result stays valid. Throws FileError if the text has no exact form or the fit is bad.
    [[nodiscard]] const Bells& at(int sampleRate) const;

    [[nodiscard]] bool isFitted() const { return m_fit.has_value(); }
    [[nodiscard]] const FilterText& text() const { return m_text; }

    /// Throws FileError for a volume that the effect does not have.
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
