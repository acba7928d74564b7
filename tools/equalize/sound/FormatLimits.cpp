#include "tools/equalize/sound/FormatLimits.h"

#include "tools/equalize/sound/OutputFormat.h"

#include <algorithm>
#include <array>

namespace eq {
namespace {

/// A container, and the number of bits in which its header states the size of the sound.
struct SizeBits {
    int container;
    int bits;
};
constexpr std::array<SizeBits, 9> SizesOfContainers = {{
    {SF_FORMAT_WAV, 32},
    {SF_FORMAT_WAVEX, 32},
    {SF_FORMAT_AIFF, 32},
    {SF_FORMAT_AU, 32},
    {SF_FORMAT_SVX, 32},
    {SF_FORMAT_VOC, 24},
    {SF_FORMAT_MAT4, 32},
    {SF_FORMAT_MAT5, 32},
    {SF_FORMAT_AVR, 32},
}};
constexpr sf_count_t HeaderRoom = 1 << 16;

constexpr sf_count_t MostSdsFrames = (1 << 21) - 1; // the header has 21 bits for the length

} // namespace

std::string faultOfLength(const SF_INFO& output, sf_count_t frames) {
    const int container = output.format & SF_FORMAT_TYPEMASK;
    if (container == SF_FORMAT_SDS && frames > MostSdsFrames)
        return "the sound has " + std::to_string(frames) + " frames, and this file format can hold only " +
               std::to_string(MostSdsFrames);
    const sf_count_t sampleBytes = bytesPerSample(output.format);
    // The size in bytes of a very long sound would overflow. Such a size is beyond every limit.
    const bool canBeCounted = frames < SF_COUNT_MAX / (sf_count_t{8} * 1024) - HeaderRoom;
    const sf_count_t bytes = canBeCounted ? frames * output.channels * sampleBytes + HeaderRoom : SF_COUNT_MAX;
    return sampleBytes != 0 ? faultOfSize(output, bytes) : "";
}

std::string faultOfSize(const SF_INFO& output, sf_count_t bytes) {
    const int container = output.format & SF_FORMAT_TYPEMASK;
    const auto* const row = std::find_if(SizesOfContainers.begin(), SizesOfContainers.end(),
                                         [&](const SizeBits& known) { return known.container == container; });
    if (row == SizesOfContainers.end() || bytes >> row->bits == 0) return "";
    return "the sound is too long for this file format; use .rf64, .w64 or .caf instead";
}

} // namespace eq
