#pragma once

#include "tools/equalize/sound/FileBytes.h"

namespace eq {

/// Copies the tags at the beginning and at the end of the MP3 file `source`, byte for byte. `target` must have no tags.
/// Returns false if `source` has no tags. Throws FileError.
bool copyMpegTags(const FileBytes& source, const FileBytes& target);

/// Copies the cue sheet and the application blocks of the FLAC file `source`, byte for byte. `target` must have no such
/// blocks. Does nothing if one of the files is not a FLAC file. Throws FileError.
void copyFlacBlocks(const FileBytes& source, const FileBytes& target);

} // namespace eq
