// The command line of `equalize`: a host without a window, which sends audio files through the effect.

#include "tools/common/OutputFile.h"
#include "tools/common/RunTool.h"
#include "tools/common/Text.h"
#include "tools/equalize/AudioReader.h"
#include "tools/equalize/AudioWriter.h"
#include "tools/equalize/EffectInstance.h"
#include "tools/equalize/EffectLibrary.h"
#include "tools/equalize/Equalizing.h"
#include "tools/equalize/OutputFormat.h"
#include "tools/equalize/Progress.h"
#include "tools/equalize/ResponsePlot.h"
#include "tools/equalize/Settings.h"

#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace eq {

namespace {

using namespace eq;

struct Options {
    std::string input;
    std::string output;
    std::vector<std::string> volumes;
    std::vector<std::string> bands;
    std::vector<std::string> normalised;
    std::string preset;
    std::string savePreset;
    std::string plot;
    std::string plugin;
    std::optional<double> quality;
    std::string bits;
    int blockFrames = 8192;
    bool keepLatency = false;
    bool noRateCorrection = false;
    bool replaceNan = false;
    bool list = false;
    bool quiet = false;
};

constexpr const char* Footer = R"(
Without INPUT and OUTPUT, --list, --plot and --save-preset work by themselves.

A preset holds lines 'name = value', with comments behind '#'; --save-preset
shows all names. --volume and --band override the preset, and --set overrides
both.

OUTPUT takes the format that its extension names, and the sample format of
INPUT where that exists. Tags, pictures and chunks are copied.
It appears when it is complete, and may be INPUT.

Exit codes: 0 done; 1 bad input, or output that cannot be written; 2 bad usage.

Examples:
  equalize --band 1:freq=80,gain=4,q=1.5 --volume -4 song.wav louder-bass.wav
  equalize --preset voice.preset --plot voice.svg talk.flac talk-clear.flac
  equalize --band 3:freq=3150,gain=-6,q=8 --plot notch.svg --save-preset notch.preset
  equalize --list)";

void declare(CLI::App& app, Options& options) {
    app.footer(Footer);
    app.add_option("INPUT", options.input, "audio file to read: WAV, AIFF, FLAC, Ogg and others");
    app.add_option("OUTPUT", options.output, "audio file to write");
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
    app.add_option("--plugin", options.plugin, "the effect's library, if not the one that came with this program")
        ->type_name("PATH");
    app.add_option("--block", options.blockFrames, "frames to process at a time, 8192 if not given")
        ->type_name("FRAMES")
        ->check(CLI::Range(1, 1000000));
    app.add_option("--bits", options.bits, "sample format of OUTPUT: 16, 24, 32 or float")
        ->type_name("BITS")
        ->check(CLI::IsMember({"16", "24", "32", "float"}));
    app.add_option("--quality", options.quality,
                   "quality of Ogg Vorbis, Opus and MP3, 0 to 10: 10 is the best, and is used if not given")
        ->type_name("Q")
        ->check(CLI::Range(0.0, AudioWriter::BestQuality));
    app.add_flag("--keep-latency", options.keepLatency, "leave the effect's delay in front of the sound");
    app.add_flag("--no-rate-correction", options.noRateCorrection,
                 "ask the effect for the frequencies as given, whatever the file's sampling rate");
    app.add_flag("--replace-nan", options.replaceNan,
                 "put 0 in the place of samples that are not a number or infinite, which are an error otherwise");
    app.add_flag("--list", options.list, "show the parameters, their ranges, and their values with these settings");
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

EffectLibrary libraryFrom(const Options& options) {
    if (options.plugin.empty()) return EffectLibrary(EffectLibrary::defaultPlace());
    return EffectLibrary(options.plugin);
}

void note(const Options& options, const std::string& message) {
    if (!options.quiet) std::fprintf(stderr, "equalize: %s\n", message.c_str());
}

void noteRate(const Options& options, const Settings& settings, const FrequencyMap& frequencies) {
    if (frequencies.isAtDesignRate() || !settings.dependsOnRate()) return;
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

void noteSamples(const Options& options, const AudioReader& reader, const AudioWriter& writer) {
    if (reader.replacedSamples() != 0)
        note(options, samplesWere(reader.replacedSamples()) + " not a number or infinite, and 0 was put in place");
    if (writer.samplesBeyondFullScale() == 0) return;
    const double excess = 20.0 * std::log10(static_cast<double>(writer.peak()));
    const int format = writer.info().format;
    const std::string what = integerBits(format) != 0 ? "clipped to full scale"
                             : isLossy(format)        ? "beyond full scale, and players may clip"
                                                      : "beyond full scale, which the format keeps";
    note(options, samplesWere(writer.samplesBeyondFullScale()) + " " + what + "; the highest is " + fixed(excess, 2) +
                      " dB above it");
}

std::optional<SampleBits> bitsFrom(const Options& options) {
    static const std::map<std::string, SampleBits> Names = {{"16", SampleBits::Bits16},
                                                            {"24", SampleBits::Bits24},
                                                            {"32", SampleBits::Bits32},
                                                            {"float", SampleBits::Float}};
    if (options.bits.empty()) return std::nullopt;
    return Names.at(options.bits);
}

void noteFormat(const Options& options, int input, int output) {
    if (isLossy(output) && !options.bits.empty())
        note(options, "note: --bits has no meaning for " + formatName(output));
    if (!isLossy(output) && options.quality) note(options, "note: --quality has no meaning for " + formatName(output));
    if (isLossy(input) && isLossy(output))
        note(options, "note: the input is already compressed with loss (" + formatName(input) +
                          "), and the output loses more; a FLAC or WAV file loses nothing more");
}

void noteSummary(const Options& options, const AudioWriter& writer, double seconds) {
    const SF_INFO& info = writer.info();
    note(options, options.input + " -> " + options.output + ": " + std::to_string(writer.framesWritten()) +
                      " frames, channels: " + std::to_string(info.channels) + ", " + std::to_string(info.samplerate) +
                      " Hz, " + formatName(info.format) + ", in " + fixed(seconds, 1) + " s");
}

void list(const EffectLibrary& library, const Settings::Resolved& settings, const FrequencyMap& frequencies) {
    const EffectInstance effect(library, settings, frequencies.sampleRate());
    const NormalisedValues values = effect.parameters();
    std::printf("%5s  %-10s  %-12s  %-14s  %8s  %s\n", "index", "preset", "effect", "range", "P", "value");
    for (int index = 0; index < ParameterCount; ++index) {
        const Parameter& parameter = Parameters[index];
        const float p = values[static_cast<std::size_t>(index)];
        const double value = shownValueOf(parameter.kind, p);
        std::printf("%5d  %-10s  %-12s  %-14s  %8.6f  %.2f %s\n", index, presetNameOf(parameter).c_str(),
                    effect.parameterName(index).c_str(), rangeText(parameter.kind).c_str(), static_cast<double>(p),
                    parameter.kind == ParameterKind::Frequency ? frequencies.landing(value) : value,
                    scaleOf(parameter.kind).unit);
    }
    if (std::fflush(stdout) != 0) throw systemError("standard output", errno);
}

void plot(const Options& options, const EffectLibrary& library, const Settings::Resolved& values,
          const FrequencyMap& frequencies) {
    const NormalisedValues all = EffectInstance(library, values, frequencies.sampleRate()).parameters();
    OutputFile::write(options.plot, drawResponse(library, all, frequencies));
}

/// What can be done with and without a file.
void serveSettings(const Options& options, const Settings& settings, const Settings::Resolved& values,
                   const FrequencyMap& frequencies) {
    if (!options.savePreset.empty()) OutputFile::write(options.savePreset, settings.presetText());
    if (options.plot.empty() && !options.list) return;
    const EffectLibrary library = libraryFrom(options);
    if (options.list) list(library, values, frequencies);
    if (!options.plot.empty()) plot(options, library, values, frequencies);
}

void runWithoutFiles(const Options& options, const Settings& settings) {
    const FrequencyMap frequencies(static_cast<int>(DesignRate), !options.noRateCorrection);
    serveSettings(options, settings, settings.resolve(frequencies), frequencies);
}

void runOnFiles(const Options& options, const Settings& settings) {
    const auto start = std::chrono::steady_clock::now();
    AudioReader reader(options.input, options.replaceNan ? NonFinite::Replaced : NonFinite::Refused);
    const FrequencyMap frequencies(reader.info().samplerate, !options.noRateCorrection);
    const Settings::Resolved values = settings.resolve(frequencies);
    noteRate(options, settings, frequencies);
    serveSettings(options, settings, values, frequencies);

    const EffectLibrary library = libraryFrom(options);
    MultichannelEffect effects(library, values, reader.info().channels, reader.info().samplerate, options.blockFrames);
    const SF_INFO format = outputFormatFor(options.output, reader.info(), bitsFrom(options));
    noteFormat(options, reader.info().format, format.format);
    const sf_count_t extra = options.keepLatency ? effects.delay() : 0;
    AudioWriter writer(options.output, format, reader,
                       reader.isLengthKnown() ? std::optional(reader.info().frames + extra) : std::nullopt,
                       options.quality.value_or(AudioWriter::BestQuality));
    {
        Progress progress(reader.info().frames + effects.delay(), !options.quiet);
        equalize(reader, effects, writer, options.keepLatency ? Latency::Kept : Latency::Removed, progress);
    }
    for (const std::string& loss : writer.notes()) note(options, "note: " + loss);
    noteSamples(options, reader, writer);
    const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - start;
    noteSummary(options, writer, duration.count());
}

void run(const Options& options) {
    const bool hasOtherTask = options.list || !options.plot.empty() || !options.savePreset.empty();
    if (options.input.empty() && !hasOtherTask) throw UsageError("INPUT and OUTPUT are missing; see --help");
    if (!options.input.empty() && options.output.empty()) throw UsageError("OUTPUT is missing; see --help");
    const Settings settings = settingsFrom(options);
    if (options.input.empty())
        runWithoutFiles(options, settings);
    else
        runOnFiles(options, settings);
}

int runCommand(int argumentCount, char** arguments) {
    Options options;
    CLI::App app("Equalizes an audio file through the Parametric Equalizer effect.", "equalize");
    declare(app, options);
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    }
    run(options);
    return 0;
}

} // namespace

} // namespace eq

int main(int argumentCount, char** arguments) {
    eq::removeTemporariesOnSignals();
    return eq::runTool("equalize", [&] { return eq::runCommand(argumentCount, arguments); });
}
