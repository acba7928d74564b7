#include "tools/equalize/sound/Speakers.h"

#include "tools/equalize/sound/FileBytes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <numeric>
#include <string>
#include <string_view>

namespace eq {
namespace {

constexpr int L = SF_CHANNEL_MAP_LEFT;
constexpr int R = SF_CHANNEL_MAP_RIGHT;
constexpr int C = SF_CHANNEL_MAP_CENTER;
constexpr int Lfe = SF_CHANNEL_MAP_LFE;
constexpr int Bl = SF_CHANNEL_MAP_REAR_LEFT;
constexpr int Br = SF_CHANNEL_MAP_REAR_RIGHT;
constexpr int Bc = SF_CHANNEL_MAP_REAR_CENTER;
constexpr int Sl = SF_CHANNEL_MAP_SIDE_LEFT;
constexpr int Sr = SF_CHANNEL_MAP_SIDE_RIGHT;

constexpr int FewestChannels = 3;
constexpr int MostChannels = 8;
using Layouts = std::array<std::array<int, MostChannels>, MostChannels - FewestChannels + 1>;

/// The order of channels in Ogg files (Xiph.Org Foundation, Vorbis I specification, section 4.3.9; for Opus: T.
/// Terriberry and others, RFC 7845, 2016, section 5.1.1.2).
constexpr Layouts OggLayouts = {{
    {L, C, R},
    {L, R, Bl, Br},
    {L, C, R, Bl, Br},
    {L, C, R, Bl, Br, Lfe},
    {L, C, R, Sl, Sr, Bc, Lfe},
    {L, C, R, Sl, Sr, Bl, Br, Lfe},
}};

/// The order of channels in FLAC files (M. van Beurden and A. Weaver, RFC 9639, 2024, section 9.1.3). Programs use the
/// same order for plain WAV files.
constexpr Layouts FlacLayouts = {{
    {L, R, C},
    {L, R, Bl, Br},
    {L, R, C, Bl, Br},
    {L, R, C, Lfe, Bl, Br},
    {L, R, C, Lfe, Bc, Sl, Sr},
    {L, R, C, Lfe, Bl, Br, Sl, Sr},
}};

/// The speakers in the order of the bits in the channel mask of extensible WAV.
constexpr std::array WavOrder = {L,
                                 R,
                                 C,
                                 Lfe,
                                 Bl,
                                 Br,
                                 static_cast<int>(SF_CHANNEL_MAP_FRONT_LEFT_OF_CENTER),
                                 static_cast<int>(SF_CHANNEL_MAP_FRONT_RIGHT_OF_CENTER),
                                 Bc,
                                 Sl,
                                 Sr};

int containerOf(const SF_INFO& info) {
    return info.format & SF_FORMAT_TYPEMASK;
}

Speakers layoutFrom(const Layouts& layouts, int channels) {
    const auto& layout = layouts[static_cast<std::size_t>(channels - FewestChannels)];
    return {layout.begin(), layout.begin() + channels};
}

bool hasLayout(int channels) {
    return channels >= FewestChannels && channels <= MostChannels;
}

/// Returns the speakers of a format with a fixed order of channels, or an empty list.
Speakers fixedLayout(const SF_INFO& info) {
    if (!hasLayout(info.channels)) return {};
    if (containerOf(info) == SF_FORMAT_OGG) return layoutFrom(OggLayouts, info.channels);
    if (containerOf(info) == SF_FORMAT_FLAC) return layoutFrom(FlacLayouts, info.channels);
    return {};
}

/// Returns the speakers that a comment of a FLAC file names, or an empty list. Programs write this comment if the
/// speakers differ from the fixed order of FLAC. The comment contains a channel mask in the form of extensible WAV.
Speakers speakersInComment(const FileDescriptor& file, int channels) {
    constexpr std::size_t Searched = 65536;
    constexpr std::string_view Key = "WAVEFORMATEXTENSIBLE_CHANNEL_MASK=0x";
    const std::string begin = FileBytes(file.get(), "").read(0, Searched);
    const std::size_t found = begin.find(Key);
    if (found == std::string::npos) return {};
    unsigned mask = 0;
    const char* const digits = begin.data() + found + Key.size();
    std::from_chars(digits, begin.data() + begin.size(), mask, 16);
    Speakers speakers;
    for (std::size_t bit = 0; bit < WavOrder.size(); ++bit)
        if ((mask >> bit & 1U) != 0) speakers.push_back(WavOrder[bit]);
    return static_cast<int>(speakers.size()) == channels ? speakers : Speakers{};
}

/// Returns L, R or C for libsndfile's second values of the three front speakers. Returns all other values unchanged.
int oneName(int speaker) {
    switch (speaker) {
    case SF_CHANNEL_MAP_FRONT_LEFT:
        return L;
    case SF_CHANNEL_MAP_FRONT_RIGHT:
        return R;
    case SF_CHANNEL_MAP_FRONT_CENTER:
        return C;
    default:
        return speaker;
    }
}

/// Renames side speakers to rear speakers if there are no rear speakers. Formats call a single pair of surround
/// speakers side or rear. If a layout has both pairs, the names stay.
Speakers withRearPair(Speakers speakers) {
    const bool hasRear = std::find(speakers.begin(), speakers.end(), Bl) != speakers.end();
    if (hasRear) return speakers;
    std::replace(speakers.begin(), speakers.end(), Sl, Bl);
    std::replace(speakers.begin(), speakers.end(), Sr, Br);
    return speakers;
}

/// Returns the order in which the channels are sorted like the bits of the mask of extensible WAV.
ChannelOrder inWavOrder(const Speakers& speakers) {
    ChannelOrder order{std::vector<int>(speakers.size()), {}};
    std::iota(order.sources.begin(), order.sources.end(), 0);
    const auto rank = [&](int channel) {
        const int speaker = speakers[static_cast<std::size_t>(channel)];
        return std::distance(WavOrder.begin(), std::find(WavOrder.begin(), WavOrder.end(), speaker));
    };
    std::stable_sort(order.sources.begin(), order.sources.end(), [&](int a, int b) { return rank(a) < rank(b); });
    for (const int channel : order.sources) order.speakers.push_back(speakers[static_cast<std::size_t>(channel)]);
    return order;
}

} // namespace

Speakers speakersOf(const FileDescriptor& metadata, SNDFILE* file, const SF_INFO& info) {
    if (info.channels < FewestChannels) return {};
    if (containerOf(info) == SF_FORMAT_FLAC)
        if (Speakers named = speakersInComment(metadata, info.channels); !named.empty()) return named;
    if (Speakers fixed = fixedLayout(info); !fixed.empty()) return fixed;
    Speakers speakers(static_cast<std::size_t>(info.channels));
    const int size = static_cast<int>(speakers.size() * sizeof(int));
    if (sf_command(file, SFC_GET_CHANNEL_MAP_INFO, speakers.data(), size) != SF_TRUE) return {};
    std::transform(speakers.begin(), speakers.end(), speakers.begin(), oneName);
    if (std::find(speakers.begin(), speakers.end(), SF_CHANNEL_MAP_INVALID) != speakers.end()) return {};
    return speakers;
}

int formatWithSpeakers(const SF_INFO& output, const Speakers& speakers) {
    if (speakers.empty() || containerOf(output) != SF_FORMAT_WAV) return output.format;
    SF_INFO extensible = output;
    extensible.format = (output.format & ~SF_FORMAT_TYPEMASK) | SF_FORMAT_WAVEX;
    return sf_format_check(&extensible) != 0 ? extensible.format : output.format;
}

std::optional<ChannelOrder> orderFor(const SF_INFO& output, const SF_INFO& input, const Speakers& speakers) {
    const Speakers to = fixedLayout(output);
    if (containerOf(output) == containerOf(input)) return ChannelOrder{{}, speakers};
    if (speakers.empty() && to.empty()) {
        // For eight channels, libsndfile would name other speakers.
        const bool namesSpeakers = containerOf(output) == SF_FORMAT_RF64 && hasLayout(input.channels);
        return ChannelOrder{{}, namesSpeakers ? layoutFrom(FlacLayouts, input.channels) : speakers};
    }
    if (to.empty()) return inWavOrder(speakers);
    const Speakers from = withRearPair(speakers.empty() ? layoutFrom(FlacLayouts, input.channels) : speakers);
    ChannelOrder order{{}, to};
    for (const int speaker : withRearPair(to)) {
        const auto found = std::find(from.begin(), from.end(), speaker);
        if (found == from.end()) return std::nullopt;
        order.sources.push_back(static_cast<int>(found - from.begin()));
    }
    return order;
}

} // namespace eq
