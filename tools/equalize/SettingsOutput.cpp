#include "tools/equalize/SettingsOutput.h"

#include "support/AsciiText.h"
#include "tools/common/Errors.h"
#include "tools/common/OutputFile.h"
#include "tools/equalize/EffectSeries.h"
#include "tools/equalize/ParameterList.h"
#include "tools/equalize/ResponsePlot.h"
#include "tools/equalize/settings/BellExport.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>

namespace eq {

namespace {

void list(const Options& options, const EffectLibrary& library, const Settings::Series& settings,
          const FrequencyMap& frequencies) {
    const auto text = options.json ? parameterJson : parameterTable;
    // If standard output receives the sound, it must receive nothing else.
    const bool isTaken = options.writesSoundToStandardOutput();
    std::FILE* const stream = isTaken ? stderr : stdout;
    std::fputs(text(library, settings, frequencies).c_str(), stream);
    if (std::fflush(stream) != 0) throw systemError(isTaken ? "standard error" : "standard output", errno);
}

void plot(const Options& options, const Settings& settings, const EffectLibrary& library,
          const Settings::Series& values, const FrequencyMap& frequencies) {
    const std::vector<NormalisedValues> all = EffectSeries(library, values, frequencies.sampleRate()).parameters();
    const double volume = shownValueOf(ParameterKind::Volume, all.front()[VolumeIndex]);
    const PlotTarget target = settings.fitTarget(frequencies, volume);
    OutputFile::write(options.plot, drawResponse(library, all, frequencies, target), options.replacingOthers());
}

/// Returns the settings for an export, without bands at 0 dB.
BellExport exportOf(const Settings::Series& series, const FrequencyMap& frequencies) {
    BellExport result{frequencies.sampleRate(), 0.0, {}};
    for (const Settings::Resolved& values : series) {
        const auto value = [&values](ParameterKind kind, int band) {
            const auto index = static_cast<std::size_t>(indexOf(kind, band));
            return shownValueOf(kind, values[index].value_or(Parameters[index].defaultP));
        };
        result.volume += value(ParameterKind::Volume, 0);
        for (int band = 1; band <= BandCount; ++band)
            if (const double gain = value(ParameterKind::Gain, band); gain != 0.0)
                result.bells.push_back(
                    {frequencies.landing(value(ParameterKind::Frequency, band)), gain, value(ParameterKind::Q, band)});
    }
    return result;
}

void exportBells(const Options& options, const Settings::Series& values, const FrequencyMap& frequencies) {
    const BellExport bells = exportOf(values, frequencies);
    const bool isForPipewire = equalNoCase(std::filesystem::path(options.exportFile).extension().string(), ".conf");
    OutputFile::write(options.exportFile, isForPipewire ? bells.pipewireText() : bells.equalizerApoText(),
                      options.replacingOthers());
}

} // namespace

EffectLibrary libraryFrom(const Options& options) {
    if (options.plugin.empty()) return EffectLibrary(EffectLibrary::defaultPlace());
    return EffectLibrary(options.plugin);
}

void serveSettings(const Options& options, const Settings& settings, const Settings::Series& values,
                   const FrequencyMap& frequencies) {
    if (!options.savePreset.empty())
        OutputFile::write(options.savePreset, settings.presetText(frequencies), options.replacingOthers());
    if (!options.exportFile.empty()) exportBells(options, values, frequencies);
    if (options.plot.empty() && !options.list) return;
    const EffectLibrary library = libraryFrom(options);
    if (options.list) list(options, library, values, frequencies);
    if (!options.plot.empty()) plot(options, settings, library, values, frequencies);
}

} // namespace eq
