// The command line of `equalize`: a host without a window, which sends audio files through the effect.

#include "tools/common/CommandLine.h"
#include "tools/common/OutputFile.h"
#include "tools/common/Printable.h"
#include "tools/common/RunTool.h"
#include "tools/common/Text.h"
#include "tools/equalize/Batch.h"
#include "tools/equalize/EffectInstance.h"
#include "tools/equalize/EffectLibrary.h"
#include "tools/equalize/Equalizing.h"
#include "tools/equalize/FilePlan.h"
#include "tools/equalize/ParameterList.h"
#include "tools/equalize/PeakGain.h"
#include "tools/equalize/Progress.h"
#include "tools/equalize/ResponsePlot.h"
#include "tools/equalize/Settings.h"
#include "tools/equalize/StatusLine.h"
#include "tools/equalize/sound/AudioReader.h"
#include "tools/equalize/sound/AudioWriter.h"
#include "tools/equalize/sound/OutputFormat.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include <CLI/CLI.hpp>

namespace eq {

namespace {

using namespace eq;

struct Options {
    FileArguments files;
    std::vector<std::string> volumes;
    std::vector<std::string> bands;
    std::vector<std::string> normalised;
    std::string preset;
    std::string savePreset;
    std::string plot;
    std::string normalize;
    bool headroom = false;
    bool dither = false;
    std::string plugin;
    std::optional<double> quality;
    std::string bits;
    int blockFrames = 8192;
    bool keepLatency = false;
    bool noRateCorrection = false;
    bool replaceNan = false;
    bool list = false;
    bool json = false;
    bool quiet = false;
    std::size_t jobs = std::max(std::thread::hardware_concurrency(), 1U);
    bool skipExisting = false;
    bool noClobber = false;
    bool dryRun = false;

    [[nodiscard]] bool hasTaskWithoutFiles() const { return list || !plot.empty() || !savePreset.empty(); }
    [[nodiscard]] Replacing replacing() const {
        return noClobber || skipExisting ? Replacing::Refused : Replacing::Allowed;
    }
};

constexpr const char* Usage = R"(  equalize [OPTIONS] INPUT OUTPUT
  equalize [OPTIONS] [--output-dir DIR] [--suffix TEXT] [--recursive] INPUT...
  equalize [OPTIONS] [--list] [--plot FILE] [--save-preset FILE] [INPUT])";

constexpr const char* Footer = R"(A preset holds lines 'name = value', with comments after '#'; --save-preset
shows all names. --volume and --band override the preset, and --set overrides
both.

OUTPUT takes the format that its extension names, and the sample format of
INPUT where that exists. Tags, pictures and chunks are copied.
It appears when it is complete, and may be INPUT.

With --output-dir, --suffix or both, every file argument is an INPUT. The
failure of one file does not affect the others.

Exit codes: 0 all files written; 1 a file could not be read or written; 2 bad
usage.

Examples:
  equalize --band 1:freq=80,gain=4,q=1.5 --volume -4 song.wav louder-bass.wav
  equalize --preset voice.preset --plot voice.svg talk.flac talk-clear.flac
  equalize --preset voice.preset --recursive --output-dir clear recordings
  equalize --band 3:freq=3150,gain=-6,q=8 --save-preset notch.preset
  equalize --list)";

void declare(CLI::App& app, Options& options) {
    app.footer(Footer);
    app.add_option("FILE", options.files.files,
                   "INPUT, an audio file to read: WAV, AIFF, FLAC, Ogg and others; OUTPUT, the file to write");
    app.add_option("--output-dir", options.files.outputFolder, "write every output into this folder")->type_name("DIR");
    app.add_option("--suffix", options.files.suffix, "put this text after the output's name, before its extension")
        ->type_name("TEXT");
    app.add_flag("--recursive", options.files.isRecursive,
                 "equalize the audio files in the folders that are named as INPUT; the output has the same folders");
    app.add_option("--jobs", options.jobs, "files to equalize at a time; the number of processors if not given")
        ->type_name("N")
        ->check(CLI::Range(1, 1024).description(""));
    app.add_flag("--skip-existing", options.skipExisting, "leave out each INPUT whose output exists");
    app.add_flag("-n,--no-clobber", options.noClobber, "never replace a file: an output that exists is a failure");
    app.add_flag("--dry-run", options.dryRun, "show which files would be written, and write none");
    app.add_option("--volume", options.volumes, "output volume, " + rangeText(ParameterKind::Volume))
        ->type_name("DB")
        ->allow_extra_args(false);
    app.add_option("--band", options.bands,
                   "settings of band N, 1 to 4, as N:freq=HZ,gain=DB,q=Q or any of the three: freq " +
                       rangeText(ParameterKind::Frequency) + ", gain " + rangeText(ParameterKind::Gain) + ", q " +
                       rangeText(ParameterKind::Q) + "; repeatable")
        ->type_name("N:SETTINGS")
        ->allow_extra_args(false);
    app.add_option("--set", options.normalised,
                   "value of a parameter by its index, as the effect takes it: 0 is the top of the range, 1 the "
                   "bottom; repeatable")
        ->type_name("INDEX=P")
        ->allow_extra_args(false);
    app.add_option("--preset", options.preset, "file with settings")->type_name("FILE");
    app.add_option("--save-preset", options.savePreset, "write the settings into a file")->type_name("FILE");
    app.add_option("--plot", options.plot, "draw the response into an SVG file")->type_name("FILE");
    app.add_option("--normalize", options.normalize,
                   "apply a gain after the effect, so that the highest sample has this level, -100 to 0 dB below full "
                   "scale; reads INPUT twice")
        ->type_name("DB");
    app.add_flag("--headroom", options.headroom,
                 "lower the sound after the effect by as much as it would clip; reads INPUT twice");
    app.add_flag("--dither", options.dither,
                 "add noise of one step before rounding to integers; the same noise in each run");
    app.add_option("--plugin", options.plugin, "the effect's library, if not the one that came with this program")
        ->type_name("PATH");
    app.add_option("--block", options.blockFrames, "frames to process at a time, 8192 if not given")
        ->type_name("FRAMES")
        ->check(CLI::Range(1, 1000000).description(""));
    app.add_option("--bits", options.bits, "sample format of OUTPUT: 16, 24, 32 or float")
        ->type_name("BITS")
        ->check(CLI::IsMember({"16", "24", "32", "float"}).description(""));
    app.add_option("--quality", options.quality,
                   "quality of Ogg Vorbis, Opus and MP3, 0 to 10: 10 is the best, and is used if not given")
        ->type_name("Q")
        ->check(CLI::Range(0.0, AudioWriter::BestQuality).description(""));
    app.add_flag("--keep-latency", options.keepLatency, "leave the effect's delay in front of the sound");
    app.add_flag("--no-rate-correction", options.noRateCorrection,
                 "ask the effect for the frequencies as given, whatever the file's sampling rate");
    app.add_flag("--replace-nan", options.replaceNan,
                 "put 0 in the place of samples that are not a number or infinite, which are an error otherwise");
    app.add_flag("--list", options.list, "show the parameters, their ranges, and their values with these settings");
    app.add_flag("--json", options.json, "with --list: as JSON");
    app.add_flag("--quiet", options.quiet, "show errors only");
}

Settings settingsFrom(const Options& options) {
    Settings settings;
    if (!options.preset.empty()) settings.readPreset(options.preset);
    for (const std::string& volume : options.volumes) settings.setVolume(volume);
    for (const std::string& band : options.bands) settings.setBand(band);
    for (const std::string& value : options.normalised) settings.setNormalised(value);
    return settings;
}

PeakGain peakGainFrom(const Options& options) {
    PeakGain gain;
    if (!options.normalize.empty()) gain.setLevel(options.normalize);
    if (options.headroom) gain.setHeadroom();
    return gain;
}

EffectLibrary libraryFrom(const Options& options) {
    if (options.plugin.empty()) return EffectLibrary(EffectLibrary::defaultPlace());
    return EffectLibrary(options.plugin);
}

void note(const Options& options, const std::string& message) {
    if (!options.quiet) StatusLine::message(message);
}

void noteRate(const Options& options, const Settings& settings, const FrequencyMap& frequencies) {
    if (frequencies.isAtDesignRate()) return;
    if (const std::string landings = settings.uncorrectedText(frequencies); !landings.empty())
        note(options, std::to_string(frequencies.sampleRate()) +
                          " Hz file: values of --set are not corrected for the rate: " + landings);
    if (!settings.dependsOnRate()) return;
    const std::string rate = std::to_string(frequencies.sampleRate());
    const std::string design = fixed(DesignRate, 0);
    note(options, frequencies.isCorrected() ? rate + " Hz file: frequencies are scaled by " + design + "/" + rate +
                                                  " on their way to the effect, so that they land where asked"
                                            : rate + " Hz file, not corrected: frequencies land at " + rate + "/" +
                                                  design + " of what is asked");
}

/// "1 sample was", "2 samples were"
std::string samplesWere(sf_count_t count) {
    return std::to_string(count) + (count == 1 ? " sample was" : " samples were");
}

void noteSamples(const Options& options, const FileJob& job, const AudioReader& reader, const AudioWriter& writer) {
    if (reader.replacedSamples() != 0)
        note(options, job.input + ": " + samplesWere(reader.replacedSamples()) +
                          " not a number or infinite, and 0 was put in place");
    if (writer.samplesBeyondFullScale() == 0) return;
    const double excess = 20.0 * std::log10(static_cast<double>(writer.peak()));
    const int format = writer.info().format;
    const std::string what = integerBits(format) != 0 ? "clipped to full scale"
                             : isLossy(format)        ? "beyond full scale, and players may clip"
                                                      : "beyond full scale, which the format keeps";
    note(options, job.output + ": " + samplesWere(writer.samplesBeyondFullScale()) + " " + what + "; the highest is " +
                      fixed(excess, 2) + " dB above it");
}

std::optional<SampleBits> bitsFrom(const Options& options) {
    static const std::map<std::string, SampleBits> Names = {{"16", SampleBits::Bits16},
                                                            {"24", SampleBits::Bits24},
                                                            {"32", SampleBits::Bits32},
                                                            {"float", SampleBits::Float}};
    if (options.bits.empty()) return std::nullopt;
    return Names.at(options.bits);
}

void noteFormat(const Options& options, const FileJob& job, int input, int output) {
    if (isLossy(output) && !options.bits.empty())
        note(options, job.output + ": --bits has no meaning for " + formatName(output));
    if (!isLossy(output) && options.quality)
        note(options, job.output + ": --quality has no meaning for " + formatName(output));
    if (integerBits(output) == 0 && options.dither)
        note(options, job.output + ": --dither has no effect on " + formatName(output) + ", which has no integers");
    if (isLossy(input) && isLossy(output))
        note(options, job.input + ": the input is already compressed with loss (" + formatName(input) +
                          "), and the output loses more; a FLAC or WAV file loses nothing more");
}

void noteSummary(const Options& options, const FileJob& job, const AudioWriter& writer, double seconds) {
    const SF_INFO& info = writer.info();
    note(options, job.input + " -> " + job.output + ": " + std::to_string(writer.framesWritten()) +
                      " frames, channels: " + std::to_string(info.channels) + ", " + std::to_string(info.samplerate) +
                      " Hz, " + formatName(info.format) + ", in " + fixed(seconds, 1) + " s");
}

void list(const Options& options, const EffectLibrary& library, const Settings::Resolved& settings,
          const FrequencyMap& frequencies) {
    const auto text = options.json ? parameterJson : parameterTable;
    std::fputs(text(library, settings, frequencies).c_str(), stdout);
    if (std::fflush(stdout) != 0) throw systemError("standard output", errno);
}

void plot(const Options& options, const EffectLibrary& library, const Settings::Resolved& values,
          const FrequencyMap& frequencies) {
    const NormalisedValues all = EffectInstance(library, values, frequencies.sampleRate()).parameters();
    OutputFile::write(options.plot, drawResponse(library, all, frequencies), options.replacing());
}

/// What can be done with and without a file.
void serveSettings(const Options& options, const Settings& settings, const Settings::Resolved& values,
                   const FrequencyMap& frequencies) {
    if (!options.savePreset.empty()) OutputFile::write(options.savePreset, settings.presetText(), options.replacing());
    if (options.plot.empty() && !options.list) return;
    const EffectLibrary library = libraryFrom(options);
    if (options.list) list(options, library, values, frequencies);
    if (!options.plot.empty()) plot(options, library, values, frequencies);
}

void runWithoutFiles(const Options& options, const Settings& settings) {
    const FrequencyMap frequencies(static_cast<int>(DesignRate), !options.noRateCorrection);
    serveSettings(options, settings, settings.resolve(frequencies), frequencies);
}

/// For the tasks that need only the sampling rate of a file.
void runOnInputAlone(const Options& options, const Settings& settings) {
    const AudioReader reader(options.files.files.front());
    const FrequencyMap frequencies(reader.info().samplerate, !options.noRateCorrection);
    const Settings::Resolved values = settings.resolve(frequencies);
    noteRate(options, settings, frequencies);
    serveSettings(options, settings, values, frequencies);
}

bool isExistingFile(const std::string& place) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(place, ignored);
}

void showPlanned(const FileJob& job) {
    std::printf("%s -> %s%s\n", printable(job.input).c_str(), printable(job.output).c_str(),
                isExistingFile(job.output) ? ", which is replaced" : "");
}

/// One or many files, one after the other or in several threads.
class FileRun {
public:
    FileRun(const Options& options, const Settings& settings, const PeakGain& peakGain,
            const std::vector<FileJob>& jobs)
        : m_options(options),
          m_settings(settings),
          m_peakGain(peakGain),
          m_isBatch(options.files.areInputs()),
          m_library(libraryFrom(options)),
          m_progress(totalWeight(jobs), jobs.size(), !options.quiet && !options.dryRun) {
        // A library that makes no instance is one failure, not one per file.
        const EffectInstance probe(m_library, {}, static_cast<int>(DesignRate));
    }

    /// Equalizes one file. Any thread may call this. Throws FileError, and UsageError for settings that do not fit the
    /// file.
    FileOutcome runOn(const FileJob& job) {
        const auto start = std::chrono::steady_clock::now();
        FileProgress progress(m_progress, job.weight);
        if (!job.fault.empty()) throw FileError(job.fault);
        if (m_peakGain.isWanted() && isDevice(job.input))
            throw FileError(job.input + ": --normalize and --headroom read the input twice, so it must be a file");
        if (isExistingFile(job.output)) {
            if (m_options.skipExisting) return skip(job);
            if (m_options.noClobber) throw FileError(job.output + ": the file exists, and --no-clobber keeps it");
        }
        AudioReader reader(job.input, nonFinite());
        const FrequencyMap frequencies(reader.info().samplerate, !m_options.noRateCorrection);
        const Settings::Resolved values = m_settings.resolve(frequencies);
        if (m_isBatch)
            m_otherRates += frequencies.isAtDesignRate() ? 0U : 1U;
        else
            noteRate(m_options, m_settings, frequencies);
        const SF_INFO format = outputFormatFor(job.output, reader.info(), bitsFrom(m_options));
        if (m_options.dryRun) {
            showPlanned(job);
            return FileOutcome::Written;
        }
        if (!m_isBatch) serveSettings(m_options, m_settings, values, frequencies);

        const int passes = m_peakGain.isWanted() ? 2 : 1;
        const double gain = m_peakGain.isWanted() ? gainOf(job, values, format.format, progress) : 1.0;
        MultichannelEffect effects(m_library, values, reader.info().channels, reader.info().samplerate,
                                   m_options.blockFrames);
        if (m_isBatch) createFolderOf(job.output);
        noteFormat(m_options, job, reader.info().format, format.format);
        AudioWriter::Options writing{.quality = m_options.quality.value_or(AudioWriter::BestQuality),
                                     .dither = m_options.dither,
                                     .replacing = m_options.replacing()};
        if (reader.isLengthKnown())
            writing.frames = reader.info().frames + (m_options.keepLatency ? effects.delay() : 0);
        AudioWriter writer(job.output, format, reader, writing);
        progress.expect((reader.info().frames + effects.delay()) * passes);
        const SoundSink write = [&](float* sound, sf_count_t frames) {
            const sf_count_t samples = frames * effects.channels();
            if (gain != 1.0)
                std::transform(sound, sound + samples, sound, [gain](float x) { return static_cast<float>(x * gain); });
            writer.write(sound, frames);
        };
        equalize(reader, effects, write, m_options.keepLatency ? Latency::Kept : Latency::Removed, progress);
        writer.finish();
        for (const std::string& loss : writer.notes()) note(m_options, job.output + ": " + loss);
        noteSamples(m_options, job, reader, writer);
        const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - start;
        if (!m_isBatch) noteSummary(m_options, job, writer, duration.count());
        return FileOutcome::Written;
    }

    /// The number of files whose sampling rate is not the effect's.
    [[nodiscard]] std::size_t otherRates() const { return m_otherRates; }

private:
    static std::uint64_t totalWeight(const std::vector<FileJob>& jobs) {
        std::uint64_t total = 0;
        for (const FileJob& job : jobs) total += job.weight;
        return total;
    }

    /// The first of two passes: finds the peak after the effect.
    double gainOf(const FileJob& job, const Settings::Resolved& values, int format, FileProgress& progress) {
        AudioReader reader(job.input, nonFinite());
        MultichannelEffect effects(m_library, values, reader.info().channels, reader.info().samplerate,
                                   m_options.blockFrames);
        progress.expect((reader.info().frames + effects.delay()) * 2);
        SamplePeaks peaks;
        const SoundSink measure = [&](const float* sound, sf_count_t frames) {
            peaks.add(sound, frames * effects.channels());
        };
        equalize(reader, effects, measure, Latency::Removed, progress);
        const double gain = m_peakGain.gainFor(peaks, format, m_options.dither);
        if (m_isBatch) return gain;
        const auto decibels = [](double factor) { return fixed(20.0 * std::log10(factor), 2); };
        note(m_options, peaks.level() == 0.0 ? job.input + ": the sound is silent, so no gain is applied"
                                             : "the peak after the effect is " + decibels(peaks.level()) +
                                                   " dBFS; gain applied: " + decibels(gain) + " dB");
        return gain;
    }

    [[nodiscard]] NonFinite nonFinite() const {
        return m_options.replaceNan ? NonFinite::Replaced : NonFinite::Refused;
    }

    FileOutcome skip(const FileJob& job) {
        if (!m_isBatch) note(m_options, job.output + ": the file exists, and --skip-existing keeps it");
        return FileOutcome::Skipped;
    }

    static void createFolderOf(const std::filesystem::path& file) {
        if (!file.has_parent_path()) return;
        std::error_code error;
        std::filesystem::create_directories(file.parent_path(), error);
        if (error) throw systemError(file.parent_path().string(), error.value());
    }

    const Options& m_options;
    const Settings& m_settings;
    const PeakGain& m_peakGain;
    bool m_isBatch;
    EffectLibrary m_library;
    Progress m_progress;
    std::atomic<std::size_t> m_otherRates = 0;
};

int runBatch(const Options& options, const Settings& settings, const PeakGain& peakGain,
             const std::vector<FileJob>& jobs) {
    if (options.list || !options.plot.empty())
        throw UsageError("--list and --plot are for one file: they depend on its sampling rate");
    if (jobs.empty()) throw FileError("the folders have no audio files");
    const auto start = std::chrono::steady_clock::now();
    Batch batch;
    std::size_t otherRates = 0;
    {
        FileRun files(options, settings, peakGain, jobs);
        if (!options.dryRun && !options.savePreset.empty())
            OutputFile::write(options.savePreset, settings.presetText(), options.replacing());
        batch.run(jobs, options.dryRun ? 1 : options.jobs, [&files](const FileJob& job) { return files.runOn(job); });
        otherRates = files.otherRates();
    }
    const FrequencyMap design(static_cast<int>(DesignRate), false);
    if (otherRates != 0 && !settings.uncorrectedText(design).empty())
        note(options, "values of --set are not corrected for the rate of " + std::to_string(otherRates) + " files");
    if (otherRates != 0 && settings.dependsOnRate())
        note(options, std::to_string(otherRates) + " files are not at " + fixed(DesignRate, 0) + " Hz: frequencies " +
                          (options.noRateCorrection ? "do not land where asked" : "were scaled to land where asked"));
    const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - start;
    note(options, "files: " + std::to_string(jobs.size()) + (options.dryRun ? ", would be written: " : ", written: ") +
                      std::to_string(batch.count(FileOutcome::Written)) +
                      ", skipped: " + std::to_string(batch.count(FileOutcome::Skipped)) + ", failed: " +
                      std::to_string(batch.count(FileOutcome::Failed)) + ", in " + fixed(duration.count(), 1) + " s");
    return batch.count(FileOutcome::Failed) == 0 ? 0 : ExitFailure;
}

int run(Options& options) {
    FileArguments& files = options.files;
    if (files.files.empty() && !options.hasTaskWithoutFiles())
        throw UsageError("INPUT and OUTPUT are missing; see --help");
    if (options.json && !options.list) throw UsageError("--json needs --list");
    if (options.headroom && !options.normalize.empty())
        throw UsageError("--normalize and --headroom exclude each other");
    const Settings settings = settingsFrom(options);
    const PeakGain peakGain = peakGainFrom(options);
    if (options.dryRun && !files.areInputs() && files.files.size() < 2)
        throw UsageError("--dry-run needs INPUT and OUTPUT; see --help");
    if (!files.areInputs() && files.files.size() < 2 && options.hasTaskWithoutFiles()) {
        if (files.files.empty())
            runWithoutFiles(options, settings);
        else
            runOnInputAlone(options, settings);
        return 0;
    }
    files.otherOutputs = {options.plot, options.savePreset};
    const std::vector<FileJob> jobs = planFiles(files);
    if (settings.isEmpty() && !peakGain.isWanted())
        note(options, "no setting was given, so the effect changes nothing");
    if (files.areInputs()) return runBatch(options, settings, peakGain, jobs);
    FileRun(options, settings, peakGain, jobs).runOn(jobs.front());
    return 0;
}

int runCommand(int argumentCount, char** arguments) {
    Options options;
    CLI::App app("Equalizes audio files through the Parametric Equalizer effect.", "equalize");
    declare(app, options);
    try {
        parseCommandLine(app, Usage, argumentCount, arguments);
    } catch (const CLI::Success& helpOrVersion) {
        return app.exit(helpOrVersion);
    }
    const int exitCode = run(options);
    if (std::fflush(stdout) != 0) throw systemError("standard output", errno);
    return exitCode;
}

} // namespace

} // namespace eq

int main(int argumentCount, char** arguments) {
    eq::removeTemporariesOnSignals();
    return eq::runTool("equalize", [&] { return eq::runCommand(argumentCount, arguments); });
}
