#pragma once

#include "platform/FileDescriptor.h"

#include <string>

namespace eq {

/// Returns the folder for temporary files: TMPDIR, or /tmp if TMPDIR is unset or empty.
[[nodiscard]] std::string spoolFolder();

/// Opens a file without a name in `spoolFolder()`, for reading and writing. The system deletes the file when it is
/// closed. Throws FileError.
[[nodiscard]] FileDescriptor openSpoolFile();

} // namespace eq
