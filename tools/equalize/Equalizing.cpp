#include "tools/equalize/Equalizing.h"

#include <algorithm>
#include <vector>

namespace eq {

//  sound | silence of the delay's length  -->  effect  -->  delay | sound
//                                                           \ skipped, unless it is kept
void equalize(AudioReader& reader, MultichannelEffect& effects, const SoundSink& sink, Latency latency,
              FileProgress& progress) {
    const int channels = effects.channels();
    std::vector<float> block(static_cast<std::size_t>(effects.blockFrames()) * static_cast<std::size_t>(channels));
    int silenceLeft = effects.delay();
    int toSkip = latency == Latency::Removed ? effects.delay() : 0;

    while (true) {
        int frames = static_cast<int>(reader.read(block.data(), effects.blockFrames()));
        if (frames < effects.blockFrames()) {
            const int silence = std::min(silenceLeft, effects.blockFrames() - frames);
            std::fill_n(block.begin() + static_cast<std::ptrdiff_t>(frames) * channels,
                        static_cast<std::ptrdiff_t>(silence) * channels, 0.0F);
            silenceLeft -= silence;
            frames += silence;
        }
        if (frames == 0) break;
        effects.process(block.data(), frames);
        const int skipped = std::min(toSkip, frames);
        toSkip -= skipped;
        sink(block.data() + static_cast<std::ptrdiff_t>(skipped) * channels, frames - skipped);
        progress.add(frames);
    }
}

} // namespace eq
