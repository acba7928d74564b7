#include "tools/equalize/SettingsOutput.h"

#include "tools/common/Errors.h"
#include "tools/common/OutputFile.h"
#include "tools/equalize/EffectInstance.h"
#include "tools/equalize/ParameterList.h"
#include "tools/equalize/ResponsePlot.h"

#include <cerrno>
#include <cstdio>

namespace eq {

namespace {

void list(const Options& options, const EffectLibrary& library, const Settings::Resolved& settings,
          const FrequencyMap& frequencies) {
    const auto text = options.json ? parameterJson : parameterTable;
    // Nothing but sound goes where the sound goes.
    const bool isTaken = options.writesSoundToStandardOutput();
    std::FILE* const stream = isTaken ? stderr : stdout;
    std::fputs(text(library, settings, frequencies).c_str(), stream);
    if (std::fflush(stream) != 0) throw systemError(isTaken ? "standard error" : "standard output", errno);
}

void plot(const Options& options, const EffectLibrary& library, const Settings::Resolved& values,
          const FrequencyMap& frequencies) {
    const NormalisedValues all = EffectInstance(library, values, frequencies.sampleRate()).parameters();
    OutputFile::write(options.plot, drawResponse(library, all, frequencies), options.replacingOthers());
}

} // namespace

EffectLibrary libraryFrom(const Options& options) {
    if (options.plugin.empty()) return EffectLibrary(EffectLibrary::defaultPlace());
    return EffectLibrary(options.plugin);
}

void serveSettings(const Options& options, const Settings& settings, const Settings::Resolved& values,
                   const FrequencyMap& frequencies) {
    if (!options.savePreset.empty())
        OutputFile::write(options.savePreset, settings.presetText(), options.replacingOthers());
    if (options.plot.empty() && !options.list) return;
    const EffectLibrary library = libraryFrom(options);
    if (options.list) list(options, library, values, frequencies);
    if (!options.plot.empty()) plot(options, library, values, frequencies);
}

} // namespace eq
