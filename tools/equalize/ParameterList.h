#pragma once

#include "tools/equalize/EffectLibrary.h"
#include "tools/equalize/FrequencyMap.h"
#include "tools/equalize/Settings.h"

#include <string>

namespace eq {

/// Returns a table of the parameters. If the settings need several effects, the table lists the parameters of each
/// effect in turn. The function creates instances of the effect, and reads their names and values. Frequencies and
/// their ranges are as heard at the sampling rate of `frequencies`. Throws FileError.
[[nodiscard]] std::string parameterTable(const EffectLibrary& library, const Settings::Series& settings,
                                         const FrequencyMap& frequencies);

/// Returns the same data as a JSON array, with one object per parameter. An object has the members effect (from 1 on;
/// only if there are several effects), index, symbol, name, unit, minimum, maximum, p and value. Throws FileError.
[[nodiscard]] std::string parameterJson(const EffectLibrary& library, const Settings::Series& settings,
                                        const FrequencyMap& frequencies);

} // namespace eq
