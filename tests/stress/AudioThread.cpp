#include "tests/stress/Host.h"

#include <algorithm>

// A thread that processes.

namespace {

using Pointers = std::array<float*, 2>;

void call(AEffectProcessProc process, AEffect* effect, Pointers inputs, Pointers outputs, std::size_t length) {
    process(effect, inputs.data(), outputs.data(), static_cast<int32>(length));
    ++counts.blocks;
    counts.samples += length;
}

/// What an effect makes of audio, in calls of any lengths.
Stereo render(AEffect* effect, Stereo audio, Choices& choices) {
    for (std::size_t done = 0, count = 0; done < audio[0].size(); done += count) {
        count = std::min(audio[0].size() - done, choices.below(choices.oneIn(2) ? 70000 : 70) + 1);
        const Pointers channels = {audio[0].data() + done, audio[1].data() + done};
        call(effect->processReplacing, effect, channels, channels, count);
    }
    return audio;
}

/// Channels at any alignment. With a NaN as the size of the samples, any numbers are among them.
class Channels {
public:
    Channels(std::size_t length, float size, Choices& choices)
        : channels{GuardedSamples(length, choices.below(16)), GuardedSamples(length, choices.below(16))} {
        for (GuardedSamples& channel : channels)
            std::generate_n(channel.data(), length, [&] {
                if (std::isnan(size)) return choices.oneIn(50) ? choices.number() : choices.sample();
                return choices.sample() * size;
            });
    }
    [[nodiscard]] Pointers pointers() { return {channels[0].data(), channels[1].data()}; }
    /// The samples, when nothing was written around them.
    [[nodiscard]] Stereo samples() {
        Stereo copy;
        for (std::size_t c = 0; c < 2; ++c) {
            channels[c].check();
            copy[c].assign(channels[c].data(), channels[c].data() + channels[c].size());
        }
        return copy;
    }

private:
    std::array<GuardedSamples, 2> channels;
};

/// Runs a block through an instance, separate or in place, replacing or adding, and looks at all that came of it.
void processBlock(Instance& instance, Choices& choices) {
    constexpr float Sizes[] = {1.0f, 1.0f, 1.0f, 0.0f, 1e-38f, FLT_MAX, NAN};
    const int32 lengths[] = {choices.between(0, 64), choices.between(1, 5) * BlockSize + choices.between(-2, 2),
                             choices.between(0, 100000)};
    const auto length = static_cast<std::size_t>(choices.of(lengths));
    const float size = choices.of(Sizes);
    instance.isModerate = instance.isModerate && size <= 1.0f;
    const bool adds = choices.oneIn(3);
    const bool isInPlace = !adds && choices.oneIn(2);
    Channels input(length, size, choices);
    Channels other(length, 1.0f, choices);
    Channels& output = isInPlace ? input : other;
    const Stereo given = input.samples();
    const Stereo present = output.samples();
    AEffect* const effect = instance.effect;
    call(adds ? effect->process : effect->processReplacing, effect, input.pointers(), output.pointers(), length);

    const Stereo result = output.samples();
    require(isInPlace || sameBits(input.samples(), given), "an input was written to");
    for (const Samples& channel : result)
        require(!instance.isModerate || std::ranges::all_of(channel, [](float x) { return std::isfinite(x); }),
                "an output is not finite");
    if (!instance.twin) return;
    Stereo expected = render(instance.twin, given, choices);
    for (std::size_t c = 0; adds && c < 2; ++c)
        std::ranges::transform(present[c], expected[c], expected[c].begin(), std::plus<>());
    require(sameBits(result, expected), "an instance does not sound like its quiet twin");
}

} // namespace

void switchOff(Instance& instance, Choices& choices) {
    for (AEffect* const effect : {instance.effect, instance.twin}) {
        if (!effect) continue;
        dispatch(effect, effMainsChanged, 0, choices.integer(), 0);
        dispatch(effect, effMainsChanged, 0, 0, choices.integer() | 1);
        require(sameBits(render(effect, noise(BlockSize), choices), silence(BlockSize)),
                "audio outlived the switching off");
    }
    instance.isModerate = true;
}

void stepAsAudio(Host& host, Choices& choices) {
    Instance& instance = choices.of(host.instances);
    {
        const std::lock_guard use(instance.users[Audio]);
        processBlock(instance, choices);
        if (instance.isModerate || choices.oneIn(2)) return;
    }
    const auto use = instance.allUsers();
    switchOff(instance, choices);
}
