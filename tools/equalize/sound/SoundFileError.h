#pragma once

#include <mutex>
#include <string>

#include <sndfile.h>

namespace eq {

/// The error of a failed opening is one for the whole process, so one thread opens a file at a time.
[[nodiscard]] std::unique_lock<std::mutex> lockSoundFileOpening();

/// Returns the reason for the last error of `file`, or of the last opening if `file` is null, in the words of this
/// program: what is wrong, and what to do where something can be done.
[[nodiscard]] std::string soundFileError(SNDFILE* file);

} // namespace eq
