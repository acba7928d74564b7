#include "tools/equalize/pipes/StreamHeader.h"

#include "support/BinaryReader.h"
#include "support/BinaryWriter.h"

#include <algorithm>
#include <array>
#include <bit>

namespace eq {
namespace {

constexpr std::uint32_t OpenSize = 0xFFFFFFFF;

int containerOf(int format) {
    return format & SF_FORMAT_TYPEMASK;
}

bool isWav(int format) {
    return containerOf(format) == SF_FORMAT_WAV || containerOf(format) == SF_FORMAT_WAVEX;
}

void put(std::string& header, std::size_t position, std::uint32_t value, std::endian order) {
    BinaryWriter field(order);
    field.write(value);
    header.replace(position, sizeof value, field.written());
}

std::endian orderOf(std::string_view header) {
    return header.starts_with("RIFX") || header.starts_with(".snd") ? std::endian::big : std::endian::little;
}

/// Calls `visit` for each chunk up to the sound, with the chunk's identifier and the position of its contents. Returns
/// the position of the sound. Throws EndOfData if the header is not complete.
template <typename Visit>
std::size_t walkChunks(std::string_view bytes, Visit visit) {
    constexpr std::size_t OuterHeader = 12;
    BinaryReader reader(bytes.data(), bytes.size(), orderOf(bytes));
    reader.skip(OuterHeader);
    for (;;) {
        const std::string_view identifier = reader.readBytes(4);
        const auto size = reader.read<std::uint32_t>();
        visit(identifier, reader.offset());
        if (identifier == "data") return reader.offset();
        reader.skip(size);
        reader.align(2);
    }
}

std::size_t sizeOfFlacHeader(std::string_view bytes) {
    constexpr std::uint32_t LastBlock = 0x80000000;
    BinaryReader reader(bytes.data(), bytes.size(), std::endian::big);
    reader.skip(4);
    for (;;) {
        const auto word = reader.read<std::uint32_t>();
        reader.skip(word & 0xFFFFFFU);
        if ((word & LastBlock) != 0) return reader.offset();
    }
}

/// Returns the size in bytes of the pages with the first `headerPackets` packets: three in Vorbis, two in Opus. The
/// sound begins on a new page. Throws EndOfData if the header is not complete.
std::size_t sizeOfOggHeader(std::string_view bytes, int headerPackets) {
    constexpr std::size_t BeforeSegments = 26;
    BinaryReader reader(bytes.data(), bytes.size());
    while (headerPackets > 0) {
        reader.skip(BeforeSegments);
        const std::string_view segments = reader.readBytes(reader.read<std::uint8_t>());
        for (const char segment : segments) {
            const auto size = static_cast<unsigned char>(segment);
            reader.skip(size);
            if (size < 255) --headerPackets;
        }
    }
    return reader.offset();
}

/// The properties of an MPEG frame. `size` is in bytes, and 0 if the header is not valid.
///
///     header, in bits: 11 that are 1 | version (2) | layer (2) | protection (1) | bitrate (4) | rate (2) |
///                      padding (1) | private (1) | mode (2) | ...
struct MpegFrame {
    bool isVersion1;
    bool isMono;
    std::size_t size;
};

MpegFrame frameOf(std::string_view bytes) {
    constexpr std::array<unsigned, 15> KilobitsOfVersion1 = {0,   32,  40,  48,  56,  64,  80, 96,
                                                             112, 128, 160, 192, 224, 256, 320};
    constexpr std::array<unsigned, 15> KilobitsOfVersion2 = {0,  8,  16, 24,  32,  40,  48, 56,
                                                             64, 80, 96, 112, 128, 144, 160};
    constexpr std::array<unsigned, 3> Rates = {44100, 48000, 32000};
    const auto header = BinaryReader(bytes.data(), bytes.size(), std::endian::big).peek<std::uint32_t>();
    const unsigned version = header >> 19U & 3U; // 3: version 1, 2: version 2, 0: version 2.5
    const unsigned kilobits = header >> 12U & 15U;
    const unsigned rate = header >> 10U & 3U;
    if (kilobits > 14 || rate > 2) return {true, false, 0};
    const bool isVersion1 = version == 3;
    const unsigned hertz = Rates[rate] >> (isVersion1 ? 0U : version == 2 ? 1U : 2U);
    const unsigned bits = 1000U * (isVersion1 ? KilobitsOfVersion1 : KilobitsOfVersion2)[kilobits];
    const unsigned padding = header >> 9U & 1U;
    return {isVersion1, (header >> 6U & 3U) == 3, (isVersion1 ? 144U : 72U) * bits / hertz + padding};
}

/// Fills in the empty MPEG frame in front of the sound. The frame then states the length and how many samples the
/// encoder has added at the start and at the end. Without `frames`, the length is open.
///
///     "Info" | flags | number of frames or of bytes | encoder's name | other fields | samples added at start, at end
///       4    |   4   |              4               |       9        |      12      |        12 bits each
void setMpegLength(std::string& frame, std::optional<sf_count_t> frames) {
    constexpr sf_count_t Delay = 576;
    constexpr sf_count_t LeastPadding = 576;
    constexpr std::uint32_t HasFrames = 1;
    constexpr std::uint32_t HasBytes = 2;
    constexpr std::size_t FrameHeader = 4;
    // At the lowest bitrates, a frame is too small for these fields, and the first frame already contains sound.
    if (frame.size() < FrameHeader || frame.find_first_not_of('\0', FrameHeader) != std::string::npos) return;
    const MpegFrame kind = frameOf(frame);
    const std::size_t sideInformation = kind.isVersion1 ? (kind.isMono ? 17 : 32) : (kind.isMono ? 9 : 17);
    const sf_count_t frameSamples = kind.isVersion1 ? 1152 : 576;
    BinaryWriter tag(std::endian::big);
    tag.writeBytes("Info");
    sf_count_t padding = 0;
    if (frames) {
        padding = frameSamples - (*frames + Delay) % frameSamples;
        if (padding < LeastPadding) padding += frameSamples;
        tag.write(HasFrames);
        tag.write(static_cast<std::uint32_t>((*frames + Delay + padding) / frameSamples));
    } else {
        // A decoder plays this frame as sound if it states neither frames nor bytes. The size of one byte is
        // impossible, so a decoder does not derive the length from it.
        tag.write(HasBytes);
        tag.write(std::uint32_t{1});
    }
    tag.writeBytes("LAME3.100");
    tag.writeBytes(std::string(12, '\0'));
    const auto ends = static_cast<std::uint32_t>(Delay << 12U | padding);
    tag.write(static_cast<std::uint8_t>(ends >> 16U));
    tag.write(static_cast<std::uint16_t>(ends & 0xFFFFU));
    const std::size_t place = FrameHeader + sideInformation;
    if (place + tag.offset() <= frame.size()) frame.replace(place, tag.offset(), tag.written());
}

} // namespace

bool isPlain(int format) {
    constexpr std::array Plain = {SF_FORMAT_PCM_S8, SF_FORMAT_PCM_U8, SF_FORMAT_PCM_16,
                                  SF_FORMAT_PCM_24, SF_FORMAT_PCM_32, SF_FORMAT_FLOAT,
                                  SF_FORMAT_DOUBLE, SF_FORMAT_ULAW,   SF_FORMAT_ALAW};
    const bool isRaw = containerOf(format) == SF_FORMAT_RAW;
    return (isWav(format) || containerOf(format) == SF_FORMAT_AU || isRaw) &&
           std::ranges::find(Plain, format & SF_FORMAT_SUBMASK) != Plain.end();
}

bool isWrittenInOrder(int format) {
    const int sampleFormat = format & SF_FORMAT_SUBMASK;
    switch (containerOf(format)) {
    case SF_FORMAT_FLAC:
        return true;
    case SF_FORMAT_OGG:
        return sampleFormat == SF_FORMAT_VORBIS || sampleFormat == SF_FORMAT_OPUS;
    case SF_FORMAT_MPEG:
        return sampleFormat == SF_FORMAT_MPEG_LAYER_III;
    default:
        return isPlain(format);
    }
}

std::optional<std::size_t> streamHeaderSize(int format, std::string_view bytes) {
    try {
        std::size_t size = 0;
        switch (containerOf(format)) {
        case SF_FORMAT_WAV:
        case SF_FORMAT_WAVEX:
            return walkChunks(bytes, [](std::string_view, std::size_t) {});
        case SF_FORMAT_AU:
            if (bytes.size() < 8) throw EndOfData();
            size = BinaryReader(bytes.data() + 4, 4, orderOf(bytes)).read<std::uint32_t>();
            break;
        case SF_FORMAT_FLAC:
            return sizeOfFlacHeader(bytes);
        case SF_FORMAT_OGG:
            return sizeOfOggHeader(bytes, (format & SF_FORMAT_SUBMASK) == SF_FORMAT_VORBIS ? 3 : 2);
        case SF_FORMAT_MPEG:
            size = frameOf(bytes).size;
            break;
        default:
            break;
        }
        if (size <= bytes.size()) return size;
    } catch (const EndOfData&) {
        // The header is not complete yet.
    }
    return std::nullopt;
}

std::string withStreamLength(std::string header, int format, std::optional<sf_count_t> frames) {
    if (isWav(format)) {
        const std::endian order = orderOf(header);
        std::size_t factPosition = 0;
        const std::size_t sound = walkChunks(header, [&](std::string_view identifier, std::size_t position) {
            if (identifier == "fact") factPosition = position;
        });
        put(header, 4, OpenSize, order);
        put(header, sound - 4, OpenSize, order);
        if (factPosition != 0) put(header, factPosition, OpenSize, order);
    }
    if (containerOf(format) == SF_FORMAT_AU) put(header, 8, OpenSize, orderOf(header));
    if (containerOf(format) == SF_FORMAT_FLAC && frames && *frames >> 36 == 0) {
        // The number of samples has 36 bits, directly before the checksum of 16 bytes. Its upper four bits share a byte
        // with another field.
        constexpr std::size_t CountPosition = 22;
        put(header, CountPosition, static_cast<std::uint32_t>(*frames & 0xFFFFFFFF), std::endian::big);
        char& first = header.at(CountPosition - 1);
        first = static_cast<char>((first & 0xF0) | static_cast<int>(*frames >> 32));
    }
    if (containerOf(format) == SF_FORMAT_MPEG) setMpegLength(header, frames);
    return header;
}

} // namespace eq
