#pragma once

#include "platform/FileDescriptor.h"
#include "tools/equalize/sound/SoundDataSize.h"

#include <string>
#include <vector>

#include <sndfile.h>

namespace eq {

/// A file that is read with some bytes of its header corrected, while the file itself stays as it is.
class PatchedFile {
public:
    /// Throws FileError if the file cannot be opened.
    PatchedFile(const std::string& name, std::vector<HeaderCorrection> corrections);

    /// Returns the functions for `sf_open_virtual`, whose data is the object.
    [[nodiscard]] static SF_VIRTUAL_IO functions();

private:
    [[nodiscard]] sf_count_t read(char* bytes, sf_count_t count);

    FileDescriptor m_descriptor;
    std::vector<HeaderCorrection> m_corrections;
};

} // namespace eq
