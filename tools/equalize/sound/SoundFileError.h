#pragma once

#include "tools/equalize/pipes/SoundFileOpening.h"

#include <string>

#include <sndfile.h>

namespace eq {

/// Returns the reason for the last error of `file`, in a text for the user. If `file` is null, returns the reason why
/// the last opening failed; the caller must still hold `lockSoundFileOpening`.
[[nodiscard]] std::string soundFileError(SNDFILE* file);

} // namespace eq
