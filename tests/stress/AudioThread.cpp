#include "tests/stress/Guarded.h"
#include "tests/stress/Host.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

// A thread that processes.

namespace {

constexpr int32 LongestBlock = 100000;

int32 blockLength(Choices& choices) {
    switch (choices.below(4)) {
    case 0:
        return choices.between(0, 64);
    case 1:
        return choices.between(1, 5) * BlockSize + choices.between(-2, 2);
    case 2:
        return choices.between(0, 5000);
    default:
        return choices.between(0, LongestBlock);
    }
}

enum class Content { Silence, Noise, Denormals, Huge, Broken };

Content blockContent(Choices& choices) {
    constexpr Content Rare[] = {Content::Silence, Content::Denormals, Content::Huge, Content::Broken};
    return choices.oneIn(4) ? choices.of(Rare) : Content::Noise;
}

float sampleOf(Content content, Choices& choices) {
    switch (content) {
    case Content::Silence:
        return 0.0f;
    case Content::Denormals:
        return choices.sample() * 1e-38f;
    case Content::Huge:
        return choices.sample() * std::numeric_limits<float>::max();
    case Content::Broken:
        return choices.oneIn(50) ? choices.number() : choices.sample();
    case Content::Noise:
        break;
    }
    return choices.sample();
}

using Channels = std::array<GuardedSamples, 2>;
using Pointers = std::array<float*, 2>;

Channels makeChannels(int32 length, Choices& choices, Content content) {
    const auto size = static_cast<std::size_t>(length);
    Channels channels{GuardedSamples(size, choices.below(16)), GuardedSamples(size, choices.below(16))};
    for (GuardedSamples& channel : channels)
        std::generate_n(channel.data(), size, [&] { return sampleOf(content, choices); });
    return channels;
}

Samples copyOf(GuardedSamples& channel) {
    return {channel.data(), channel.data() + channel.size()};
}

void call(AEffectProcessProc process, AEffect* effect, Pointers inputs, Pointers outputs, int32 length) {
    const Pointers inputsBefore = inputs;
    const Pointers outputsBefore = outputs;
    process(effect, inputs.data(), outputs.data(), length);
    require(inputs == inputsBefore && outputs == outputsBefore, "the arrays of channels were written to");
    ++counts.blocks;
    counts.samples += static_cast<std::uint64_t>(length);
}

/// The twin's output, in calls of other lengths.
Stereo renderTwin(AEffect* twin, Stereo input, Choices& choices) {
    Stereo output = silence(input[0].size());
    const auto length = static_cast<int32>(input[0].size());
    for (int32 done = 0; done < length;) {
        const int32 count = std::min(length - done, std::max(1, blockLength(choices)));
        call(twin->processReplacing, twin, {input[0].data() + done, input[1].data() + done},
             {output[0].data() + done, output[1].data() + done}, count);
        done += count;
    }
    return output;
}

[[noreturn]] void soundsUnlike(const Samples& result, const Samples& expected, std::size_t at) {
    violation("an instance does not sound like its quiet twin: sample " + std::to_string(at) + " of " +
              std::to_string(result.size()) + " is " + std::to_string(result[at]) + ", the twin's " +
              std::to_string(expected[at]));
}

/// Runs a block through an instance, separate or in place, replacing or adding, and looks at all that came of it.
void processBlock(Instance& instance, Choices& choices) {
    const int32 length = blockLength(choices);
    const Content content = blockContent(choices);
    const bool adds = choices.oneIn(3);
    const bool isInPlace = !adds && choices.oneIn(2);
    const bool isMono = !isInPlace && choices.oneIn(4);
    Channels input = makeChannels(length, choices, content);
    Channels present = makeChannels(length, choices, adds ? Content::Noise : Content::Silence);
    Channels& output = isInPlace ? input : present;
    GuardedSamples& right = isMono ? input[0] : input[1];
    const Stereo given = {copyOf(input[0]), copyOf(right)};
    const Stereo sum = {copyOf(present[0]), copyOf(present[1])};
    if (content == Content::Huge || content == Content::Broken) instance.isModerate = false;

    AEffect* const effect = instance.effect;
    call(adds ? effect->process : effect->processReplacing, effect, {input[0].data(), right.data()},
         {output[0].data(), output[1].data()}, length);

    for (const Channels& channels : {std::cref(input), std::cref(present)})
        for (const GuardedSamples& channel : channels) channel.check();
    if (!isInPlace) require(sameBits({copyOf(input[0]), copyOf(right)}, given), "an input was written to");
    const Stereo result = {copyOf(output[0]), copyOf(output[1])};
    if (instance.isModerate)
        for (const Samples& channel : result)
            require(std::ranges::all_of(channel, [](float x) { return std::isfinite(x); }), "an output is not finite");
    if (!instance.isSteady()) return;
    Stereo expected = renderTwin(instance.twin, given, choices);
    if (adds)
        for (std::size_t c = 0; c < 2; ++c)
            std::ranges::transform(sum[c], expected[c], expected[c].begin(), std::plus<>());
    for (std::size_t c = 0; c < 2; ++c)
        if (const long at = firstDifference(result[c], expected[c]); at >= 0)
            soundsUnlike(result[c], expected[c], static_cast<std::size_t>(at));
    ++counts.compared;
}

} // namespace

void switchOff(Instance& instance, Choices& choices) {
    const intptr on = choices.oneIn(2) ? 1 : choices.integer() | 1;
    for (AEffect* const effect : {instance.effect, instance.twin}) {
        if (!effect) continue;
        require(dispatch(effect, effMainsChanged, choices.integer(), 0) == 0, "effMainsChanged did not give 0");
        dispatch(effect, effMainsChanged, 0, on);
        Stereo audio = noise(BlockSize);
        const Pointers channels = {audio[0].data(), audio[1].data()};
        call(effect->processReplacing, effect, channels, channels, BlockSize);
        require(sameBits(audio, silence(BlockSize)), "audio outlived the switching off");
    }
    instance.isModerate = true;
}

void stepAsAudio(Host& host, Choices& choices) {
    Instance& instance = choices.of(host.instances);
    const bool wantsSwitchOff = choices.oneIn(3);
    {
        const std::shared_lock shared(instance.use);
        if (!instance.effect) return;
        const std::lock_guard oneAtATime(instance.audio);
        processBlock(instance, choices);
        if (instance.isModerate || !wantsSwitchOff) return;
    }
    const std::unique_lock exclusive(instance.use);
    if (instance.effect) switchOff(instance, choices);
}
