#pragma once

#include "tools/equalize/sound/FileBytes.h"

namespace eq {

/// Copies the tags at the beginning and at the end of an MP3 file, byte for byte, into one that has none. Returns false
/// if there are none.
bool copyMpegTags(const FileBytes& source, const FileBytes& target);

/// Copies the cue sheet and the blocks of applications of a FLAC file, byte for byte, into one that has none.
void copyFlacBlocks(const FileBytes& source, const FileBytes& target);

} // namespace eq
