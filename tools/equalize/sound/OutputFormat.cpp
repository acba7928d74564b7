#include "tools/equalize/sound/OutputFormat.h"

#include "support/AsciiText.h"
#include "tools/common/Errors.h"
#include "tools/common/Text.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace eq {
namespace {

int containerOf(int format) {
    return format & SF_FORMAT_TYPEMASK;
}
int sampleFormatOf(int format) {
    return format & SF_FORMAT_SUBMASK;
}

struct Extension {
    std::string_view text;
    int format; ///< the container, and the sample format if the extension determines it
};

/// Extensions that are missing from libsndfile's own list, or that have another meaning there.
constexpr std::array<Extension, 9> Extensions = {{
    {"wave", SF_FORMAT_WAV},
    {"aif", SF_FORMAT_AIFF},
    {"aifc", SF_FORMAT_AIFF},
    {"snd", SF_FORMAT_AU},
    {"sph", SF_FORMAT_NIST},
    {"ogg", SF_FORMAT_OGG},
    {"oga", SF_FORMAT_OGG},
    {"opus", SF_FORMAT_OGG | SF_FORMAT_OPUS},
    {"mp3", SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III},
}};

/// The sample formats for an output that cannot have the sample format of the input, in the order of preference.
constexpr std::array SampleFormats = {SF_FORMAT_PCM_24,  SF_FORMAT_PCM_16,  SF_FORMAT_VORBIS,
                                      SF_FORMAT_ALAC_24, SF_FORMAT_FLOAT,   SF_FORMAT_MPEG_LAYER_III,
                                      SF_FORMAT_PCM_S8,  SF_FORMAT_DPCM_16, SF_FORMAT_ULAW};

template <typename Visit>
void forEachContainer(Visit visit) {
    int count = 0;
    sf_command(nullptr, SFC_GET_FORMAT_MAJOR_COUNT, &count, sizeof count);
    for (int i = 0; i < count; ++i) {
        SF_FORMAT_INFO info = {};
        info.format = i;
        if (sf_command(nullptr, SFC_GET_FORMAT_MAJOR, &info, sizeof info) == 0) visit(info);
    }
}

/// Returns the format of an extension, or 0 if no container has the extension. If several containers have it, returns
/// the input's container, or else the first one.
int formatOfExtension(std::string_view extension, int inputFormat) {
    const auto row = std::find_if(Extensions.begin(), Extensions.end(),
                                  [&](const Extension& known) { return equalNoCase(known.text, extension); });
    if (row != Extensions.end()) return row->format;
    int format = 0;
    const auto match = [&](const SF_FORMAT_INFO& container) {
        // libsndfile lists NIST files under the extension of another format.
        if (!equalNoCase(container.extension, extension) || container.format == SF_FORMAT_NIST) return;
        if (format == 0 || container.format == containerOf(inputFormat)) format = container.format;
    };
    forEachContainer(match);
    return format;
}

std::string extensionOf(const std::filesystem::path& place) {
    const std::string extension = place.extension().string();
    return extension.empty() ? extension : extension.substr(1);
}

std::string nameFrom(int command, int format) {
    SF_FORMAT_INFO info = {};
    info.format = format;
    return sf_command(nullptr, command, &info, sizeof info) == 0 && info.name != nullptr ? info.name : "?";
}

bool canWrite(const SF_INFO& output) {
    // libsndfile accepts the format MPEG in a WAV file, but cannot write it.
    const bool isMpegElsewhere =
        sampleFormatOf(output.format) == SF_FORMAT_MPEG_LAYER_III && containerOf(output.format) != SF_FORMAT_MPEG;
    return !isMpegElsewhere && sf_format_check(&output) != 0;
}

int sampleFormatFrom(SampleBits bits) {
    constexpr std::array Formats = {SF_FORMAT_PCM_16, SF_FORMAT_PCM_24, SF_FORMAT_PCM_32, SF_FORMAT_FLOAT};
    return Formats.at(static_cast<std::size_t>(bits));
}

SF_INFO usualFormatFor(const std::filesystem::path& place, const SF_INFO& input, const std::string& extension) {
    SF_INFO output = {};
    output.samplerate = input.samplerate;
    output.channels = input.channels;
    const int wanted = formatOfExtension(extension, input.format);
    if (wanted == 0 && !extension.empty())
        throw UsageError(place.string() + ": no audio format has the extension " + eq::quoted("." + extension) +
                         "; use wav, aiff, flac, ogg, opus, mp3 or caf, for example");
    // If the container stays the same, the byte order stays the same, too.
    output.format = input.format;
    if (sampleFormatOf(wanted) != 0)
        output.format = wanted;
    else if (wanted != 0 && wanted != containerOf(input.format))
        output.format = wanted | sampleFormatOf(input.format);
    if (containerOf(output.format) == SF_FORMAT_SD2)
        throw FileError(place.string() +
                        ": Sound Designer II files, which are pairs of files, cannot be written; use another format");
    if (canWrite(output)) return output;

    for (const int sampleFormat : SampleFormats) {
        output.format = containerOf(output.format) | sampleFormat;
        if (canWrite(output)) return output;
    }
    throw FileError(place.string() + ": " + nameFrom(SFC_GET_FORMAT_INFO, containerOf(output.format)) +
                    " files cannot hold " + std::to_string(input.channels) + " channels at " +
                    std::to_string(input.samplerate) + " Hz; use another format");
}

} // namespace

SF_INFO outputFormatFor(const std::filesystem::path& place, const SF_INFO& input, std::optional<SampleBits> bits,
                        const std::string& format) {
    SF_INFO output = usualFormatFor(place, input, format.empty() ? extensionOf(place) : format);
    if (!bits || isLossy(output.format)) return output;
    output.format = (output.format & ~SF_FORMAT_SUBMASK) | sampleFormatFrom(*bits);
    if (canWrite(output)) return output;
    throw UsageError(place.string() + ": " + containerName(output.format) + " files cannot hold samples of " +
                     nameFrom(SFC_GET_FORMAT_INFO, sampleFormatOf(output.format)) + "; see --bits");
}

bool isLossy(int format) {
    constexpr std::array Lossy = {SF_FORMAT_VORBIS, SF_FORMAT_OPUS, SF_FORMAT_MPEG_LAYER_I, SF_FORMAT_MPEG_LAYER_II,
                                  SF_FORMAT_MPEG_LAYER_III};
    return std::find(Lossy.begin(), Lossy.end(), sampleFormatOf(format)) != Lossy.end();
}

bool isCompressed(int format) {
    constexpr std::array Lossless = {SF_FORMAT_ALAC_16, SF_FORMAT_ALAC_20, SF_FORMAT_ALAC_24, SF_FORMAT_ALAC_32};
    return isLossy(format) || containerOf(format) == SF_FORMAT_FLAC ||
           std::find(Lossless.begin(), Lossless.end(), sampleFormatOf(format)) != Lossless.end();
}

std::string containerName(int format) {
    const std::string name = nameFrom(SFC_GET_FORMAT_INFO, containerOf(format));
    return name.substr(0, name.find(" ("));
}

bool hasAudioExtension(const std::filesystem::path& file) {
    return isFormatName(extensionOf(file));
}

bool isFormatName(const std::string& name) {
    return formatOfExtension(name, 0) != 0;
}

std::string formatName(int format) {
    return nameFrom(SFC_GET_FORMAT_INFO, containerOf(format)) + ", " +
           nameFrom(SFC_GET_FORMAT_INFO, sampleFormatOf(format));
}

int integerBits(int format) {
    if (isLossy(format)) return 0;
    switch (sampleFormatOf(format)) {
    case SF_FORMAT_FLOAT:
    case SF_FORMAT_DOUBLE:
        return 0;
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
    case SF_FORMAT_DPCM_8:
        return 8;
    case SF_FORMAT_ALAC_20:
        return 20;
    case SF_FORMAT_PCM_24:
    case SF_FORMAT_ALAC_24:
    case SF_FORMAT_DWVW_24:
        return 24;
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_ALAC_32:
        return 32;
    case SF_FORMAT_DWVW_12:
        return 12;
    default:
        // This includes the telephone formats, which compress 16 bits.
        return 16;
    }
}

int bytesPerSample(int format) {
    switch (sampleFormatOf(format)) {
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
    case SF_FORMAT_ULAW:
    case SF_FORMAT_ALAW:
        return 1;
    case SF_FORMAT_PCM_16:
        return 2;
    case SF_FORMAT_PCM_24:
        return 3;
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_FLOAT:
        return 4;
    case SF_FORMAT_DOUBLE:
        return 8;
    default:
        return 0;
    }
}

} // namespace eq
