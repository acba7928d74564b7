#pragma once

#include "tools/equalize/settings/Bell.h"
#include "tools/equalize/settings/FilterText.h"

#include <vector>

namespace eq {

/// Returns the bells with the same transfer functions as the filters of a text at a rate. Ignores filters with a gain
/// of 0 dB. Throws FileError if lines have no exact form, with a detail for each of them.
[[nodiscard]] std::vector<Bell> exactBells(const FilterText& text, int sampleRate);

} // namespace eq
