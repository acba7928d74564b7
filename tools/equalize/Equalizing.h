#pragma once

#include "tools/equalize/AudioReader.h"
#include "tools/equalize/AudioWriter.h"
#include "tools/equalize/MultichannelEffect.h"
#include "tools/equalize/Progress.h"

namespace eq {

/// What becomes of the samples of delay that the effect puts in front of the sound.
enum class Latency {
    Removed, ///< the output is aligned with the input, and as long
    Kept,    ///< they stay, and the output is longer by them, so that nothing is lost
};

/// Sends all sound of `reader` through the effect into `writer`, a block at a time, and finishes the output. Throws
/// FileError.
void equalize(AudioReader& reader, MultichannelEffect& effects, AudioWriter& writer, Latency latency,
              Progress& progress);

} // namespace eq
