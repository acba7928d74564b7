#include "tools/equalize/settings/ImportedFile.h"

#include "tools/common/Errors.h"
#include "tools/common/Text.h"
#include "tools/equalize/settings/BellFit.h"
#include "tools/equalize/settings/ExactBells.h"
#include "tools/equalize/settings/TargetResponse.h"

#include <algorithm>
#include <utility>

namespace eq {
namespace {

constexpr double AudibleDeviation = 2.0; ///< dB; a larger deviation causes a warning
constexpr double WorstDeviation = 6.0;   ///< dB; a fit with a larger deviation is refused

/// Returns line numbers as text, such as "1-4, 6".
std::string listOf(const std::vector<int>& lines) {
    std::string text;
    for (std::size_t first = 0; first < lines.size();) {
        std::size_t last = first;
        while (last + 1 < lines.size() && lines[last + 1] == lines[last] + 1) ++last;
        text += (text.empty() ? "" : ", ") + std::to_string(lines[first]);
        if (last != first) text += "-" + std::to_string(lines[last]);
        first = last + 1;
    }
    return text;
}

/// Returns the exact bells. Returns nothing for a text without an exact form, or with more than `mostBells` bells.
std::optional<std::vector<Bell>> exactBellsWithin(const FilterText& text, int sampleRate, int mostBells) {
    try {
        std::vector<Bell> bells = exactBells(text, sampleRate);
        if (bells.size() <= static_cast<std::size_t>(mostBells)) return bells;
    } catch (const FileError&) {
        // The text has no exact form, so the caller fits it.
    }
    return std::nullopt;
}

} // namespace

ImportedFile::ImportedFile(const std::filesystem::path& file, std::optional<Fit> fit, Notice notice)
    : m_text(FilterText::read(file)), m_fit(fit), m_notice(std::move(notice)) {
    if (!m_text.otherLines.empty())
        m_notice(m_text.name + ": not used, because they are not settings: " +
                 (m_text.otherLines.size() == 1 ? "line " : "lines ") + listOf(m_text.otherLines));
}

const ImportedFile::Bells& ImportedFile::at(int sampleRate) const {
    const std::lock_guard lock(m_inUse);
    auto found = m_bells.find(sampleRate);
    if (found == m_bells.end()) {
        found = m_bells.emplace(sampleRate, convert(sampleRate)).first;
        if (m_fit) m_notice(m_text.name + ": " + fitText(found->second, sampleRate));
        if (m_fit && *found->second.deviation > AudibleDeviation)
            m_notice(m_text.name + ": warning: more than " + fixed(AudibleDeviation, 0) +
                     " dB is audible; a higher number of --bands may help");
    }
    if (m_fit) judge(found->second);
    return found->second;
}

ImportedFile::Bells ImportedFile::convert(int sampleRate) const {
    if (!m_fit) return {exactBells(m_text, sampleRate), m_text.preamp};
    if (std::optional<std::vector<Bell>> exact = exactBellsWithin(m_text, sampleRate, m_fit->mostBells))
        return {*std::move(exact), m_text.preamp, 0.0, fitRange(sampleRate).lowest};
    // A curve has no fixed level. The fit chooses the level, within the range of the volume.
    const ValueRange level = {VolumeRange.lowest - m_text.preamp, VolumeRange.highest - m_text.preamp};
    const ValueRange offsets = m_text.curve.empty() ? ValueRange{0.0, 0.0} : level;
    BellFit fit = fitBells(TargetResponse(m_text, sampleRate), sampleRate, m_fit->mostBells, offsets);
    return {std::move(fit.bells), m_text.preamp + fit.offset, fit.deviation, fit.deviationFrequency};
}

/// Returns "the fit with 8 bands deviates by up to 0.62 dB, at 34.5 Hz (rate 44100 Hz)".
std::string ImportedFile::fitText(const Bells& bells, int sampleRate) {
    return "the fit with " + std::to_string(bells.bells.size()) + (bells.bells.size() == 1 ? " band" : " bands") +
           " deviates by up to " + fixed(*bells.deviation, 2) + " dB, at " +
           fixed(bells.deviationFrequency, bells.deviationFrequency < 100.0 ? 1 : 0) + " Hz (rate " +
           std::to_string(sampleRate) + " Hz)";
}

void ImportedFile::judge(const Bells& bells) const {
    if (m_fit->isForced || *bells.deviation <= WorstDeviation) return;
    throw FileError(m_text.name + ": the fit deviates by " + fixed(*bells.deviation, 2) + " dB, more than " +
                    fixed(WorstDeviation, 0) + " dB; a higher number of --bands may help, and --force accepts the fit");
}

void ImportedFile::requireVolume(const Bells& bells) const {
    if (bells.volume >= VolumeRange.lowest && bells.volume <= VolumeRange.highest) return;
    throw FileError(m_text.origin(m_text.preampLine) + "Preamp " + shortest(bells.volume) +
                    " dB is not from -12 to 12 dB; --volume sets another volume, and --headroom lowers the sound after "
                    "the effect by as much as it would clip");
}

} // namespace eq
