#include "tools/equalize/Equalizing.h"

#include "tools/equalize/ReadAhead.h"
#include "tools/equalize/WriteBehind.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace eq {

namespace {

/// Returns the number of frames in a block. The system needs less time for few large blocks, and 256 KiB fit into a
/// processor's cache.
int transferFrames(const MultichannelEffect& effects) {
    constexpr int TransferBytes = 1 << 18;
    return std::max(1, TransferBytes / (effects.channels() * static_cast<int>(sizeof(float))));
}

} // namespace

//  sound | silence of the delay's length  -->  effect  -->  delay | sound
//                                                           \ skipped, unless it is kept
void equalize(AudioReader& reader, MultichannelEffect& effects, const SoundSink& sink, Latency latency, Threads threads,
              FileProgress& progress) {
    const int channels = effects.channels();
    const int blockFrames = transferFrames(effects);
    std::vector<float> block(static_cast<std::size_t>(blockFrames) * static_cast<std::size_t>(channels));
    std::optional<ReadAhead> readAhead;
    std::optional<WriteBehind> writeBehind;
    if (threads == Threads::Three) {
        readAhead.emplace(reader, blockFrames);
        writeBehind.emplace(sink, channels, blockFrames);
    }
    int silenceLeft = effects.delay();
    int toSkip = latency == Latency::Removed ? effects.delay() : 0;

    while (true) {
        int frames =
            static_cast<int>(readAhead ? readAhead->read(block.data()) : reader.read(block.data(), blockFrames));
        if (frames < blockFrames) {
            const int silence = std::min(silenceLeft, blockFrames - frames);
            std::fill_n(block.begin() + static_cast<std::ptrdiff_t>(frames) * channels,
                        static_cast<std::ptrdiff_t>(silence) * channels, 0.0F);
            silenceLeft -= silence;
            frames += silence;
        }
        if (frames == 0) break;
        effects.process(block.data(), frames);
        const int skipped = std::min(toSkip, frames);
        toSkip -= skipped;
        float* const sound = block.data() + static_cast<std::ptrdiff_t>(skipped) * channels;
        if (writeBehind)
            writeBehind->write(sound, frames - skipped);
        else
            sink(sound, frames - skipped);
        progress.add(frames);
    }
    if (writeBehind) writeBehind->finish();
}

} // namespace eq
