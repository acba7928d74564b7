#pragma once

#include "platform/FileDescriptor.h"

#include <optional>
#include <vector>

#include <sndfile.h>

namespace eq {

/// The speaker of each channel, as a value such as SF_CHANNEL_MAP_LEFT. Empty if the speakers are unknown. Also empty
/// for mono and stereo, whose channels have the same order in all formats.
using Speakers = std::vector<int>;

/// Returns the speakers of an open file. They come from a comment of a FLAC file, from the fixed order of the format,
/// or from the header of the file; the first of these sources that exists counts. `metadata` contains the bytes of the
/// file up to its sound.
[[nodiscard]] Speakers speakersOf(const FileDescriptor& metadata, SNDFILE* file, const SF_INFO& info);

/// Returns the output's format, with extensible WAV in place of plain WAV if there are speakers. Plain WAV cannot name
/// the speakers.
[[nodiscard]] int formatWithSpeakers(const SF_INFO& output, const Speakers& speakers);

/// Assigns the channels of an input to the channels of an output.
struct ChannelOrder {
    std::vector<int> sources; ///< the input channel of each output channel; empty if the order stays
    Speakers speakers;        ///< of the output
};

/// Returns the order of the channels of `output`. `speakers` are the speakers of `input`, in its order. Returns nothing
/// if the output's format has fixed speakers that differ from the input's speakers.
[[nodiscard]] std::optional<ChannelOrder> orderFor(const SF_INFO& output, const SF_INFO& input,
                                                   const Speakers& speakers);

} // namespace eq
