#pragma once

#include "platform/FileDescriptor.h"

#include <string>

namespace eq {

/// The folder for temporary files: TMPDIR, or else /tmp.
[[nodiscard]] std::string spoolFolder();

/// Opens a file without a name in that folder, for reading and writing. Throws FileError.
[[nodiscard]] FileDescriptor openSpoolFile();

} // namespace eq
