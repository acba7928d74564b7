#pragma once

#include "tools/equalize/EffectLibrary.h"
#include "tools/equalize/FrequencyMap.h"
#include "tools/equalize/Options.h"
#include "tools/equalize/Settings.h"

namespace eq {

/// Loads the effect's library. Throws FileError.
[[nodiscard]] EffectLibrary libraryFrom(const Options& options);

/// Performs the tasks of --list, --plot, --save-preset and --export. Throws FileError.
void serveSettings(const Options& options, const Settings& settings, const Settings::Series& values,
                   const FrequencyMap& frequencies);

} // namespace eq
