#pragma once

#include "tools/equalize/pipes/SoundFileOpening.h"

#include <string>

#include <sndfile.h>

namespace eq {

/// Returns the reason for the last error of `file`, or of the last opening if `file` is null, in the words of this
/// program: what is wrong, and what to do where something can be done.
[[nodiscard]] std::string soundFileError(SNDFILE* file);

} // namespace eq
