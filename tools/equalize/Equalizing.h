#pragma once

#include "tools/equalize/MultichannelEffect.h"
#include "tools/equalize/Progress.h"
#include "tools/equalize/sound/AudioReader.h"

#include <functional>

namespace eq {

/// The treatment of the effect's delay, which is silence before the sound.
enum class Latency {
    Removed, ///< the output is aligned with the input, and has its length
    Kept,    ///< the delay stays, and makes the output longer by its number of samples
};

/// The threads that read, filter and write a file.
enum class Threads {
    One,   ///< the calling thread does all, which needs the least processor time
    Three, ///< one thread each for reading, filtering and writing, at the same time
};

/// A function that receives interleaved sound, which it may change, and the number of frames.
using SoundSink = std::function<void(float*, sf_count_t)>;

/// Sends all sound of `reader` through the effect into `sink`, block by block. Throws FileError, and exceptions of the
/// sink. With three threads, one thread uses the reader and another thread uses the sink until the function returns.
void equalize(AudioReader& reader, MultichannelEffect& effects, const SoundSink& sink, Latency latency, Threads threads,
              FileProgress& progress);

} // namespace eq
