#pragma once

#include "tools/equalize/MultichannelEffect.h"
#include "tools/equalize/Progress.h"
#include "tools/equalize/sound/AudioReader.h"

#include <functional>

namespace eq {

/// What becomes of the samples of delay that the effect puts in front of the sound.
enum class Latency {
    Removed, ///< the output is aligned with the input, and as long
    Kept,    ///< they stay, and the output is longer by them, so that nothing is lost
};

/// Where a file is read and written.
enum class Threads {
    One,   ///< all in the caller's thread, which costs the least processor time
    Three, ///< reading, filtering and writing at the same time, a thread each
};

/// Receives interleaved sound, which it may change, and its number of frames.
using SoundSink = std::function<void(float*, sf_count_t)>;

/// Sends all sound of `reader` through the effect into `sink`, a block at a time. Throws FileError, and what the sink
/// throws. With three threads, the reader and the sink are each used by a thread of their own until the function ends.
void equalize(AudioReader& reader, MultichannelEffect& effects, const SoundSink& sink, Latency latency, Threads threads,
              FileProgress& progress);

} // namespace eq
