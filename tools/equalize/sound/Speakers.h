#pragma once

#include "platform/FileDescriptor.h"

#include <optional>
#include <vector>

#include <sndfile.h>

namespace eq {

/// The speaker of each channel, as SF_CHANNEL_MAP_LEFT and the like. Empty if the speakers are unknown, and for mono
/// and stereo, which all formats order alike.
using Speakers = std::vector<int>;

/// Returns the speakers of an open file, whose bytes up to its sound are in `metadata`: those that a comment of a FLAC
/// file names, or those of its format, or else those that its header names.
[[nodiscard]] Speakers speakersOf(const FileDescriptor& metadata, SNDFILE* file, const SF_INFO& info);

/// Returns the format in which the speakers can be named: extensible WAV instead of plain WAV.
[[nodiscard]] int formatWithSpeakers(const SF_INFO& output, const Speakers& speakers);

/// The order of channels on the way from an input to an output.
struct ChannelOrder {
    std::vector<int> sources; ///< for each output channel the input channel; empty if the order stays
    Speakers speakers;        ///< of the output
};

/// Returns the order for an output with `input`'s channels. Nothing if the output's format has a fixed list of speakers
/// that lacks one of the input's.
[[nodiscard]] std::optional<ChannelOrder> orderFor(const SF_INFO& output, const SF_INFO& input,
                                                   const Speakers& speakers);

} // namespace eq
