#pragma once

#include "tools/equalize/Batch.h"
#include "tools/equalize/EffectLibrary.h"
#include "tools/equalize/Equalizing.h"
#include "tools/equalize/FilePlan.h"
#include "tools/equalize/Options.h"
#include "tools/equalize/PeakGain.h"
#include "tools/equalize/Progress.h"
#include "tools/equalize/Settings.h"
#include "tools/equalize/sound/AudioReader.h"

#include <atomic>
#include <cstddef>
#include <vector>

namespace eq {

/// Equalizes one file or many. Several threads may process different files.
class FileRun {
public:
    /// The arguments must outlive this object. Throws FileError if the library creates no instance.
    FileRun(const Options& options, const Settings& settings, const PeakGain& peakGain,
            const std::vector<FileJob>& jobs);

    /// Equalizes one file. Any thread may call this. Throws FileError, and UsageError for settings that do not fit the
    /// file.
    FileOutcome runOn(const FileJob& job);

    /// Returns the number of files of a batch whose sampling rate is not `DesignRate`.
    [[nodiscard]] std::size_t otherRates() const { return m_otherRates; }

private:
    double gainOf(SoundInput& input, const Settings::Series& values, int format, FileProgress& progress);
    FileOutcome skip(const FileJob& job) const;
    [[nodiscard]] NonFinite nonFinite() const;
    [[nodiscard]] Threads threadsFor(int input, int output) const;

    const Options& m_options;
    const Settings& m_settings;
    const PeakGain& m_peakGain;
    bool m_isBatch;
    EffectLibrary m_library;
    Progress m_progress;
    std::atomic<std::size_t> m_otherRates = 0;
};

} // namespace eq
