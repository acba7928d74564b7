#pragma once

#include "tools/equalize/settings/Bell.h"
#include "tools/equalize/settings/FilterText.h"

#include <vector>

namespace eq {

/// Returns the bells with the same transfer functions as the filters of a text at a rate. A filter without a gain has
/// none. Throws FileError, with a detail for each line that has no exact form.
[[nodiscard]] std::vector<Bell> exactBells(const FilterText& text, int sampleRate);

} // namespace eq
