#include "tools/equalize/FileRun.h"

#include "tools/common/Errors.h"
#include "tools/common/NamedDescriptor.h"
#include "tools/common/OutputStream.h"
#include "tools/common/Printable.h"
#include "tools/common/Text.h"
#include "tools/equalize/EffectInstance.h"
#include "tools/equalize/Equalizing.h"
#include "tools/equalize/MultichannelEffect.h"
#include "tools/equalize/Notes.h"
#include "tools/equalize/SettingsOutput.h"
#include "tools/equalize/sound/AudioWriter.h"
#include "tools/equalize/sound/OutputFormat.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <system_error>

namespace eq {

namespace {

std::optional<SampleBits> bitsFrom(const Options& options) {
    static const std::map<std::string, SampleBits> names = {{"16", SampleBits::Bits16},
                                                            {"24", SampleBits::Bits24},
                                                            {"32", SampleBits::Bits32},
                                                            {"float", SampleBits::Float}};
    if (options.bits.empty()) return std::nullopt;
    return names.at(options.bits);
}

bool isExistingFile(const std::string& place) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(place, ignored) && !isStream(place);
}

/// Returns the name of the output's format; empty if the extension of the output decides. Standard output has no
/// extension, so its default is WAV.
std::string formatOf(const Options& options, const FileJob& job) {
    return options.format.empty() && descriptorNamedBy(job.output) ? "wav" : options.format;
}

void showPlanned(const FileJob& job) {
    std::printf("%s -> %s%s\n", printable(job.input).c_str(), printable(job.output).c_str(),
                isExistingFile(job.output) ? ", which is replaced" : "");
}

std::uint64_t totalWeight(const std::vector<FileJob>& jobs) {
    std::uint64_t total = 0;
    for (const FileJob& job : jobs) total += job.weight;
    return total;
}

void createFolderOf(const std::filesystem::path& file) {
    if (!file.has_parent_path()) return;
    std::error_code error;
    std::filesystem::create_directories(file.parent_path(), error);
    if (error) throw systemError(file.parent_path().string(), error.value());
}

} // namespace

FileRun::FileRun(const Options& options, const Settings& settings, const PeakGain& peakGain,
                 const std::vector<FileJob>& jobs)
    : m_options(options),
      m_settings(settings),
      m_peakGain(peakGain),
      m_isBatch(options.files.areInputs()),
      m_library(libraryFrom(options)),
      m_progress(totalWeight(jobs), jobs.size(), !options.quiet && !options.dryRun) {
    // Create an instance now. If the library cannot create it, this is one failure, and not one failure per file.
    const EffectInstance probe(m_library, {}, static_cast<int>(DesignRate));
}

FileOutcome FileRun::runOn(const FileJob& job) {
    const auto start = std::chrono::steady_clock::now();
    FileProgress progress(m_progress, job.weight);
    if (!job.fault.empty()) throw FileError(job.fault);
    if (isExistingFile(job.output)) {
        if (m_options.skipExisting) return skip(job);
        if (m_options.noClobber) throw FileError(job.output + ": the file exists, and --no-clobber keeps it");
    }
    SoundInput input(job.input);
    if (m_peakGain.isWanted()) input.spool("it is read twice");
    AudioReader reader(input, nonFinite());
    const FrequencyMap frequencies(reader.info().samplerate, !m_options.noRateCorrection);
    const Settings::Series values = m_settings.resolve(frequencies);
    if (m_isBatch)
        m_otherRates += frequencies.isAtDesignRate() ? 0U : 1U;
    else
        noteRate(m_options, m_settings, frequencies);
    const SF_INFO format = outputFormatFor(job.output, reader.info(), bitsFrom(m_options), formatOf(m_options, job));
    if (m_options.dryRun) {
        showPlanned(job);
        return FileOutcome::Written;
    }
    if (!m_isBatch) serveSettings(m_options, m_settings, values, frequencies);

    const int passes = m_peakGain.isWanted() ? 2 : 1;
    const double gain = m_peakGain.isWanted() ? gainOf(input, values, format.format, progress) : 1.0;
    MultichannelEffect effects(m_library, values, reader.info().channels, reader.info().samplerate,
                               m_options.blockFrames);
    if (m_isBatch) createFolderOf(job.output);
    noteSpools(m_options, job, input, format.format);
    noteFormat(m_options, job, reader, format.format);
    AudioWriter::Options writing{.quality = m_options.quality.value_or(AudioWriter::BestQuality),
                                 .dither = m_options.dither,
                                 .replacing = m_options.replacing()};
    if (reader.isLengthKnown()) writing.frames = reader.info().frames + (m_options.keepLatency ? effects.delay() : 0);
    AudioWriter writer(job.output, format, reader, writing);
    progress.expect((reader.info().frames + effects.delay()) * passes);
    const SoundSink write = [&](float* sound, sf_count_t frames) {
        const sf_count_t samples = frames * effects.channels();
        if (gain != 1.0)
            std::transform(sound, sound + samples, sound, [gain](float x) { return static_cast<float>(x * gain); });
        writer.write(sound, frames);
    };
    equalize(reader, effects, write, m_options.keepLatency ? Latency::Kept : Latency::Removed,
             threadsFor(reader.info().format, format.format), progress);
    writer.finish();
    for (const std::string& loss : writer.notes()) note(m_options, job.output + ": " + loss);
    noteLeftInPipe(m_options, reader);
    noteSamples(m_options, job, reader, writer);
    const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - start;
    if (!m_isBatch) noteSummary(m_options, job, writer, duration.count());
    return FileOutcome::Written;
}

/// Returns the gain after the effect. Runs the first of two passes, which finds the peak after the effect.
double FileRun::gainOf(SoundInput& input, const Settings::Series& values, int format, FileProgress& progress) {
    AudioReader reader(input, nonFinite());
    MultichannelEffect effects(m_library, values, reader.info().channels, reader.info().samplerate,
                               m_options.blockFrames);
    progress.expect((reader.info().frames + effects.delay()) * 2);
    SamplePeaks peaks;
    const SoundSink measure = [&](const float* sound, sf_count_t frames) {
        peaks.add(sound, frames * effects.channels());
    };
    equalize(reader, effects, measure, Latency::Removed, threadsFor(reader.info().format, format), progress);
    const double gain = m_peakGain.gainFor(peaks, format, m_options.dither);
    if (m_isBatch) return gain;
    const auto decibels = [](double factor) { return fixed(20.0 * std::log10(factor), 2); };
    note(m_options, peaks.level() == 0.0 ? input.name() + ": the sound is silent, so no gain is applied"
                                         : "the peak after the effect is " + decibels(peaks.level()) +
                                               " dBFS; gain applied: " + decibels(gain) + " dB");
    return gain;
}

/// Returns three threads for a single file with a compressed format. In a batch, the files run in parallel instead.
Threads FileRun::threadsFor(int input, int output) const {
    const bool isWorthIt = isCompressed(input) || isCompressed(output);
    return isWorthIt && !m_isBatch && m_options.jobs > 1 ? Threads::Three : Threads::One;
}

NonFinite FileRun::nonFinite() const {
    return m_options.replaceNan ? NonFinite::Replaced : NonFinite::Refused;
}

FileOutcome FileRun::skip(const FileJob& job) const {
    if (!m_isBatch) note(m_options, job.output + ": the file exists, and --skip-existing keeps it");
    return FileOutcome::Skipped;
}

} // namespace eq
