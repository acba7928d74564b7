#pragma once

#include "platform/FileDescriptor.h"
#include "tools/equalize/sound/SoundDataSize.h"

#include <string>
#include <vector>

#include <sndfile.h>

namespace eq {

/// Reads a file with corrected bytes in its header. The file stays unchanged.
class PatchedFile {
public:
    /// Throws FileError if the file cannot be opened.
    PatchedFile(const std::string& name, std::vector<HeaderCorrection> corrections);

    /// Returns the functions for `sf_open_virtual`. Their data pointer is the PatchedFile.
    [[nodiscard]] static SF_VIRTUAL_IO functions();

private:
    [[nodiscard]] sf_count_t read(char* bytes, sf_count_t count);

    FileDescriptor m_descriptor;
    std::vector<HeaderCorrection> m_corrections;
};

} // namespace eq
