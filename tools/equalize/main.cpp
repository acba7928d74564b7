// The command line of `equalize`: a host without a window, which sends audio files through the effect.

#include "tools/common/CommandLine.h"
#include "tools/common/OutputFile.h"
#include "tools/common/RunTool.h"
#include "tools/common/Text.h"
#include "tools/equalize/Batch.h"
#include "tools/equalize/FactoryPresets.h"
#include "tools/equalize/FilePlan.h"
#include "tools/equalize/FileRun.h"
#include "tools/equalize/Notes.h"
#include "tools/equalize/Options.h"
#include "tools/equalize/PeakGain.h"
#include "tools/equalize/Settings.h"
#include "tools/equalize/SettingsOutput.h"
#include "tools/equalize/sound/AudioReader.h"
#include "tools/equalize/sound/AudioWriter.h"
#include "tools/equalize/sound/OutputFormat.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace eq {

namespace {

constexpr const char* Usage = R"(  equalize [OPTIONS] INPUT OUTPUT
  equalize [OPTIONS] [--output-dir DIR] [--suffix TEXT] [--recursive] INPUT...
  equalize [OPTIONS] [--list] [--plot FILE] [--save-preset FILE] [--export FILE]
           [INPUT])";

constexpr const char* Footer = R"(A preset has lines 'name = value', and comments after '#'. --save-preset writes
all names. --volume and --band override a preset or an imported file, and --set
overrides them all.

The extension of OUTPUT selects its format. OUTPUT has the sample format of
INPUT if the format permits it. Tags, pictures and chunks are copied. OUTPUT
appears when it is complete, and may be the same file as INPUT.

With --output-dir, --suffix or both, every file argument is an INPUT. A file
that fails does not affect the others.

Exit codes: 0 all files written; 1 a file could not be read or written; 2 bad
usage.

Examples:
  equalize --band 1:freq=80,gain=4,q=1.5 --volume -4 song.wav louder-bass.wav
  equalize --preset voice.preset --plot voice.svg talk.flac talk-clear.flac
  equalize --preset voice.preset --recursive --output-dir clear recordings
  equalize --band 3:freq=3150,gain=-6,q=8 --save-preset notch.preset
  sox song.flac -t wav - | equalize --volume -4 - - --format mp3 > song.mp3
  equalize --import headphones.txt --fit song.wav for-headphones.wav
  equalize --preset voice.preset --export voice.conf
  equalize --list)";

void declare(CommandLine& commandLine, Options& options) {
    commandLine.option("FILE", options.files.files,
                       "INPUT, an audio file to read: WAV, AIFF, FLAC, Ogg and others; OUTPUT, the file to write; - is "
                       "standard input or standard output");
    commandLine.option("--output-dir", options.files.outputFolder, "write every output into this folder").value("DIR");
    commandLine.option("--suffix", options.files.suffix, "add this text to each output's name, before the extension")
        .value("TEXT");
    commandLine.flag(
        "--recursive", options.files.isRecursive,
        "equalize the audio files in the folders that are named as INPUT; the output has the same folders");
    commandLine
        .option("--jobs", options.jobs, "files to equalize at the same time; the number of processors if not given")
        .value("N")
        .range(1, 1024);
    commandLine.flag("--skip-existing", options.skipExisting, "skip each INPUT whose output exists");
    commandLine.flag("-n,--no-clobber", options.noClobber, "never replace a file: an output that exists is a failure");
    commandLine.flag("--dry-run", options.dryRun, "show which files would be written, and write none");
    commandLine.option("--volume", options.volumes, "output volume, " + rangeText(ParameterKind::Volume))
        .value("DB")
        .oneValueEach();
    commandLine
        .option("--band", options.bands,
                "settings of band N, 1 to 4, as N:freq=HZ,gain=DB,q=Q or any of the three: freq " +
                    rangeText(ParameterKind::Frequency) + ", gain " + rangeText(ParameterKind::Gain) + ", q " +
                    rangeText(ParameterKind::Q) + "; repeatable")
        .value("N:SETTINGS")
        .oneValueEach();
    commandLine
        .option("--set", options.normalised,
                "normalised value of a parameter, by its index: 0 is the top of the range, 1 the bottom; "
                "repeatable")
        .value("INDEX=P")
        .oneValueEach();
    commandLine.option("--preset", options.preset, "file with settings, or a factory preset").value("FILE|NAME");
    commandLine.flag("--list-presets", options.listPresets, "show the factory presets");
    commandLine.option("--save-preset", options.savePreset, "write the settings into a file").value("FILE");
    commandLine
        .option("--import", options.import,
                "file with the filters of Equalizer APO, REW or AutoEq; more than four run in several effects")
        .value("FILE");
    commandLine.flag("--fit", options.fit,
                     "approximate a file of --import that has no exact form, and show the deviation");
    commandLine.option("--bands", options.fitBands, "the largest number of bands for --fit, 1 to 32; 8 if not given")
        .value("N")
        .range(1, 32);
    commandLine.flag("--force", options.force, "accept a fit that deviates by more than 6 dB");
    commandLine
        .option("--export", options.exportFile,
                "write the settings as filters of Equalizer APO, or of PipeWire if FILE ends in .conf")
        .value("FILE");
    commandLine.option("--plot", options.plot, "draw the response into an SVG file").value("FILE");
    commandLine
        .option("--normalize", options.normalize,
                "apply a gain after the effect, so that the highest sample has this level, -100 to 0 dB relative to "
                "full scale; reads INPUT twice")
        .value("DB");
    commandLine.flag("--headroom", options.headroom,
                     "lower the sound after the effect if it would clip; reads INPUT twice");
    commandLine.flag("--dither", options.dither,
                     "add noise of one step before rounding to integers; the same noise in each run");
    commandLine
        .option("--plugin", options.plugin, "the effect's library, if not the library that came with this program")
        .value("PATH");
    commandLine.option("--block", options.blockFrames, "frames to process at a time, 2048 if not given")
        .value("FRAMES")
        .range(1, 1000000);
    commandLine.option("--bits", options.bits, "sample format of OUTPUT: 16, 24, 32 or float")
        .value("BITS")
        .oneOf({"16", "24", "32", "float"});
    commandLine
        .option("--format", options.format,
                "format of OUTPUT, named by its extension, such as flac; wav for standard output if not given")
        .value("NAME");
    commandLine
        .option("--quality", options.quality,
                "quality of Ogg Vorbis, Opus and MP3, 0 to 10: 10 is the best, and is used if not given")
        .value("Q")
        .range(0.0, AudioWriter::BestQuality);
    commandLine.flag("--keep-latency", options.keepLatency, "leave the effect's delay before the sound");
    commandLine.flag("--no-rate-correction", options.noRateCorrection,
                     "do not correct the frequencies for a file whose sampling rate is not 44100 Hz");
    commandLine.flag("--replace-nan", options.replaceNan,
                     "replace samples that are infinite or not a number by 0; without this option they are an error");
    commandLine.flag("--list", options.list, "show the parameters, their ranges, and their values with these settings");
    commandLine.flag("--json", options.json, "with --list: as JSON");
    commandLine.flag("--quiet", options.quiet, "show errors only");
}

Settings settingsFrom(const Options& options) {
    Settings settings;
    if (options.import.empty() && (options.fit || options.fitBands || options.force))
        throw UsageError("--fit, --bands and --force need --import");
    if (!options.fit && (options.fitBands || options.force)) throw UsageError("--bands and --force need --fit");
    if (!options.import.empty() && !options.preset.empty())
        throw UsageError("--import and --preset cannot be used together; give one of them");
    if (!options.import.empty()) {
        constexpr int UsualBands = 8;
        std::optional<ImportedFile::Fit> fit;
        if (options.fit) fit = {options.fitBands.value_or(UsualBands), options.force};
        const auto notice = [&options](const std::string& message) { note(options, message); };
        settings.setImport(std::make_shared<const ImportedFile>(options.import, fit, notice));
    }
    if (!options.preset.empty()) settings.readPreset(presetFileOf(options.preset));
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

void runWithoutFiles(const Options& options, const Settings& settings) {
    const FrequencyMap frequencies(static_cast<int>(DesignRate), !options.noRateCorrection);
    serveSettings(options, settings, settings.resolve(frequencies), frequencies);
}

/// Performs the tasks that need only the sampling rate of INPUT, such as --list and --plot.
void runOnInputAlone(const Options& options, const Settings& settings) {
    SoundInput input(options.files.files.front());
    const AudioReader reader(input);
    const FrequencyMap frequencies(reader.info().samplerate, !options.noRateCorrection);
    const Settings::Series values = settings.resolve(frequencies);
    noteRate(options, settings, frequencies);
    serveSettings(options, settings, values, frequencies);
}

int runBatch(const Options& options, const Settings& settings, const PeakGain& peakGain,
             const std::vector<FileJob>& jobs) {
    if (options.list || !options.plot.empty() || !options.exportFile.empty())
        throw UsageError("--list, --plot and --export are for one file: they depend on its sampling rate");
    if (jobs.empty()) throw FileError("the folders contain no audio files; audio files are found by their extension");
    const auto start = std::chrono::steady_clock::now();
    const FrequencyMap design(static_cast<int>(DesignRate), false);
    Batch batch;
    std::size_t otherRates = 0;
    {
        FileRun files(options, settings, peakGain, jobs);
        if (!options.dryRun && !options.savePreset.empty())
            OutputFile::write(options.savePreset, settings.presetText(design), options.replacingOthers());
        batch.run(jobs, options.dryRun ? 1 : options.jobs, [&files](const FileJob& job) { return files.runOn(job); });
        otherRates = files.otherRates();
    }
    const std::string otherFiles = "files not at " + fixed(DesignRate, 0) + " Hz: " + std::to_string(otherRates) + "; ";
    if (otherRates != 0 && !settings.uncorrectedText(design).empty())
        note(options, otherFiles + "values of --set are not corrected for the rate");
    if (otherRates != 0 && settings.dependsOnRate())
        note(options, otherFiles + (options.noRateCorrection ? "frequencies are not corrected for the rate"
                                                             : "frequencies are scaled, and are heard as given"));
    const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - start;
    note(options, "files: " + std::to_string(jobs.size()) + (options.dryRun ? ", would be written: " : ", written: ") +
                      std::to_string(batch.count(FileOutcome::Written)) +
                      ", skipped: " + std::to_string(batch.count(FileOutcome::Skipped)) + ", failed: " +
                      std::to_string(batch.count(FileOutcome::Failed)) + ", in " + fixed(duration.count(), 1) + " s");
    return batch.count(FileOutcome::Failed) == 0 ? 0 : ExitFailure;
}

int run(Options& options) {
    FileArguments& files = options.files;
    if (options.listPresets) {
        std::fputs(factoryPresetList().c_str(), stdout);
        return 0;
    }
    nameStandardStreams(files);
    if (files.files.empty() && !options.hasTaskWithoutFiles())
        throw UsageError("INPUT and OUTPUT are missing; see --help");
    if (options.json && !options.list) throw UsageError("--json needs --list");
    if (options.headroom && !options.normalize.empty())
        throw UsageError("--normalize and --headroom cannot be used together; give one of them");
    if (!options.format.empty() && !isFormatName(options.format))
        throw UsageError("--format: there is no audio format " + eq::quoted(options.format) +
                         "; use for instance wav, au, flac, ogg, opus, mp3, aiff or caf");
    if (!options.format.empty() && files.areInputs())
        throw UsageError("--format is for one OUTPUT: several outputs have the extensions of their inputs");
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
    files.otherOutputs = {options.plot, options.savePreset, options.exportFile};
    const std::vector<FileJob> jobs = planFiles(files);
    if (settings.isEmpty() && !peakGain.isWanted())
        note(options, "no setting was given, so the effect changes nothing");
    if (files.areInputs()) return runBatch(options, settings, peakGain, jobs);
    FileRun(options, settings, peakGain, jobs).runOn(jobs.front());
    return 0;
}

int runCommand(int argumentCount, char** arguments) {
    Options options;
    CommandLine commandLine("equalize", "Equalizes audio files through the Parametric Equalizer effect.", Usage,
                            Footer);
    declare(commandLine, options);
    if (const auto exitCode = commandLine.parse(argumentCount, arguments)) return *exitCode;
    const int exitCode = run(options);
    if (std::fflush(stdout) != 0) throw systemError("standard output", errno);
    return exitCode;
}

} // namespace

} // namespace eq

int main(int argumentCount, char** arguments) {
    eq::holdStandardStreams();
    eq::removeTemporariesOnSignals();
    return eq::runTool("equalize", [&] { return eq::runCommand(argumentCount, arguments); });
}
