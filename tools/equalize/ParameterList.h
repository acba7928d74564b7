#pragma once

#include "tools/equalize/EffectLibrary.h"
#include "tools/equalize/FrequencyMap.h"
#include "tools/equalize/Settings.h"

#include <string>

namespace eq {

/// The parameters of fresh instances with the settings, one instance after the other. Frequencies and their ranges are
/// what a user hears at the sampling rate of `frequencies`. Throw FileError.
[[nodiscard]] std::string parameterTable(const EffectLibrary& library, const Settings::Series& settings,
                                         const FrequencyMap& frequencies);

/// The same as a JSON array, with one object per parameter: effect (from 1 on; only with several), index, symbol, name,
/// unit, minimum, maximum, p and value.
[[nodiscard]] std::string parameterJson(const EffectLibrary& library, const Settings::Series& settings,
                                        const FrequencyMap& frequencies);

} // namespace eq
