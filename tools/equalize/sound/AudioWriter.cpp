#include "tools/equalize/sound/AudioWriter.h"

#include "tools/common/Errors.h"
#include "tools/common/OutputStream.h"
#include "tools/equalize/pipes/StreamHeader.h"
#include "tools/equalize/sound/FormatLimits.h"
#include "tools/equalize/sound/OutputFormat.h"
#include "tools/equalize/sound/SampleMagnitudes.h"
#include "tools/equalize/sound/SoundFileError.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <limits>

#include <sys/stat.h>
#include <unistd.h>

namespace eq {
namespace {

constexpr std::array PlainSampleFormats = {
    SF_FORMAT_PCM_S8,  SF_FORMAT_PCM_U8,  SF_FORMAT_PCM_16,  SF_FORMAT_PCM_24, SF_FORMAT_PCM_32,
    SF_FORMAT_FLOAT,   SF_FORMAT_DOUBLE,  SF_FORMAT_ULAW,    SF_FORMAT_ALAW,   SF_FORMAT_ALAC_16,
    SF_FORMAT_ALAC_20, SF_FORMAT_ALAC_24, SF_FORMAT_ALAC_32,
};
constexpr std::array PlainContainers = {SF_FORMAT_WAV, SF_FORMAT_WAVEX, SF_FORMAT_RF64, SF_FORMAT_W64, SF_FORMAT_AIFF,
                                        SF_FORMAT_AU,  SF_FORMAT_CAF,   SF_FORMAT_FLAC, SF_FORMAT_OGG, SF_FORMAT_MPEG};

ChannelOrder channelOrderFor(const std::string& name, const SF_INFO& format, const AudioReader& source) {
    std::optional<ChannelOrder> order = orderFor(format, source.info(), source.speakers());
    if (order) return *std::move(order);
    throw FileError(name + ": " + formatName(format.format) + " cannot hold the speakers of the input's " +
                    std::to_string(format.channels) + " channels; use .wav, .caf or .aiff instead");
}

/// Returns whether a file of this format has exactly the written number of frames and exactly the given rate. Other
/// formats fill up the last block of frames, or round the rate.
bool isExact(int format) {
    const auto isIn = [](const auto& list, int value) {
        return std::find(list.begin(), list.end(), value) != list.end();
    };
    return isIn(PlainContainers, format & SF_FORMAT_TYPEMASK) &&
           (isLossy(format) || isIn(PlainSampleFormats, format & SF_FORMAT_SUBMASK));
}

} // namespace

SF_VIRTUAL_IO AudioWriter::sinkFunctions() {
    SF_VIRTUAL_IO functions = {};
    functions.get_filelen = [](void* data) -> sf_count_t {
        struct stat file = {};
        return fstat(static_cast<Sink*>(data)->descriptor, &file) == 0 ? file.st_size : -1;
    };
    functions.seek = [](sf_count_t offset, int whence, void* data) -> sf_count_t {
        return lseek(static_cast<Sink*>(data)->descriptor, offset, whence);
    };
    functions.tell = [](void* data) -> sf_count_t { return lseek(static_cast<Sink*>(data)->descriptor, 0, SEEK_CUR); };
    functions.read = [](void* buffer, sf_count_t count, void* data) -> sf_count_t {
        return read(static_cast<Sink*>(data)->descriptor, buffer, static_cast<std::size_t>(count));
    };
    functions.write = [](const void* buffer, sf_count_t count, void* data) -> sf_count_t {
        Sink& sink = *static_cast<Sink*>(data);
        sf_count_t done = 0;
        while (done < count) {
            const ssize_t written = ::write(sink.descriptor, static_cast<const char*>(buffer) + done,
                                            static_cast<std::size_t>(count - done));
            if (written < 0 && errno == EINTR) continue;
            if (written < 0) {
                if (sink.error == 0) sink.error = errno;
                break;
            }
            done += written;
        }
        return done;
    };
    return functions;
}

AudioWriter::AudioWriter(const std::filesystem::path& place, const SF_INFO& format, const AudioReader& source,
                         const Options& options)
    : m_metadata(source, format.format),
      m_name(place.string()),
      m_info(format),
      m_order(channelOrderFor(m_name, format, source)),
      m_sink{-1, 0},
      m_integerBits(integerBits(format.format)) {
    m_info.format = formatWithSpeakers(m_info, m_order.speakers);
    if (isStream(place) && isWrittenInOrder(m_info.format)) {
        openStreamed(place, options.frames);
    } else {
        m_output = std::make_unique<OutputFile>(place, options.replacing);
        m_sink.descriptor = m_output->descriptor();
        if (const std::string fault = options.frames ? faultOfLength(m_info, *options.frames) : ""; !fault.empty())
            throw FileError(m_name + ": " + fault);
    }
    SF_VIRTUAL_IO functions = m_stream ? PipeSink::functions() : sinkFunctions();
    void* const sink = m_stream ? static_cast<void*>(m_stream.get()) : &m_sink;
    auto lock = lockSoundFileOpening();
    m_file.reset(sf_open_virtual(&functions, SFM_WRITE, &m_info, sink));
    if (!m_file) {
        if (m_sink.error != 0) fail();
        throw FileError(m_name + ": cannot be written as " + formatName(format.format) + ": " +
                        soundFileError(nullptr));
    }
    lock.unlock();
    // Write no PEAK chunk: it contains the time of writing, and needs more processor time than all other work of
    // libsndfile.
    sf_command(m_file.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
    m_metadata.addToHeader(m_file.get());
    if (!m_order.speakers.empty())
        sf_command(m_file.get(), SFC_SET_CHANNEL_MAP_INFO, m_order.speakers.data(),
                   static_cast<int>(m_order.speakers.size() * sizeof(int)));
    if (isLossy(format.format)) setQuality(options.quality);
    if (options.dither) m_dither.emplace();
}

void AudioWriter::openStreamed(const std::filesystem::path& place, std::optional<sf_count_t> frames) {
    const auto complete = [this, frames](const std::string& header) {
        // In MPEG, tags are inserted in front of the frame that states the length, so set the length first. In other
        // formats, the length is at the beginning of the header, so set the length after the tags are added.
        const bool isMpeg = (m_info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG;
        const auto withLength = [&](std::string bytes) {
            return withStreamLength(std::move(bytes), m_info.format, frames);
        };
        MetadataCopy::StreamParts parts = m_metadata.addToStream(isMpeg ? withLength(header) : header);
        m_streamTrailer = std::move(parts.trailer);
        return isMpeg ? std::move(parts.header) : withLength(std::move(parts.header));
    };
    m_stream = std::make_unique<PipeSink>(openStream(place), m_name, m_info.format, complete);
}

void AudioWriter::setQuality(double quality) {
    // The highest constant bitrate of LAME is above its best variable bitrate.
    int mode = quality < BestQuality ? SF_BITRATE_MODE_VARIABLE : SF_BITRATE_MODE_CONSTANT;
    sf_command(m_file.get(), SFC_SET_BITRATE_MODE, &mode, sizeof mode);
    double share = quality / BestQuality;
    sf_command(m_file.get(), SFC_SET_VBR_ENCODING_QUALITY, &share, sizeof share);
}

void AudioWriter::fail() const {
    if (m_stream) m_stream->requireSuccess();
    if (m_sink.error != 0) throw systemError(m_name, m_sink.error);
    throw FileError(m_name + ": cannot be written: " + soundFileError(m_file.get()));
}

void AudioWriter::write(const float* interleaved, sf_count_t frames) {
    const sf_count_t samples = frames * m_info.channels;
    if (m_stream) m_stream->beginSound();
    const float* const ordered = inOrder(interleaved, frames);
    measure(ordered, samples);
    if (m_integerBits != 0)
        writeIntegers(ordered, samples);
    else if (sf_write_float(m_file.get(), ordered, samples) != samples)
        fail();
    if (m_sink.error != 0) fail();
    if (m_stream) m_stream->requireSuccess();
    m_framesWritten += frames;
}

const float* AudioWriter::inOrder(const float* interleaved, sf_count_t frames) {
    if (m_order.sources.empty()) return interleaved;
    m_ordered.clear();
    for (sf_count_t frame = 0; frame < frames; ++frame)
        for (const int source : m_order.sources) m_ordered.push_back(interleaved[frame * m_info.channels + source]);
    return m_ordered.data();
}

void AudioWriter::measure(const float* interleaved, sf_count_t samples) {
    const SampleMagnitudes magnitudes = magnitudesOf(interleaved, static_cast<std::size_t>(samples));
    if (!std::isfinite(magnitudes.largest))
        throw FileError(
            m_name +
            ": the equalized sound is not finite: the input is too far beyond full scale; reduce its level first");
    m_samplesBeyondFullScale += static_cast<sf_count_t>(magnitudes.beyondFullScale);
    m_peak = std::max(m_peak, magnitudes.largest);
}

void AudioWriter::writeIntegers(const float* interleaved, sf_count_t samples) {
    // libsndfile uses the upper bits of an `int`, and ignores the lower bits.
    const int unusedBits = std::numeric_limits<int>::digits + 1 - m_integerBits;
    const double fullScale = std::ldexp(1.0, m_integerBits - 1);
    m_integers.resize(static_cast<std::size_t>(samples));
    std::transform(interleaved, interleaved + samples, m_integers.begin(), [&](float sample) {
        const double rounded = std::nearbyint(sample * fullScale + (m_dither ? m_dither->next() : 0.0));
        const double limited = std::clamp(rounded, -fullScale, fullScale - 1.0);
        return static_cast<int>(limited) * (1 << unusedBits);
    });
    if (sf_write_int(m_file.get(), m_integers.data(), samples) != samples) fail();
}

void AudioWriter::finish() {
    if (m_stream) {
        finishStream();
        return;
    }
    m_file.reset();
    if (m_sink.error != 0) throw systemError(m_name, m_sink.error);
    // In some formats, a file without sound cannot be read back, and tags cannot be added to it. Check the file before
    // the tags are added.
    if (m_framesWritten == 0) verify();
    m_metadata.addAfterSound(FileBytes(m_sink.descriptor, m_name));
    verify();
    m_output->commit();
}

void AudioWriter::finishStream() {
    const int container = m_info.format & SF_FORMAT_TYPEMASK;
    if (m_framesWritten == 0 && (container == SF_FORMAT_FLAC || container == SF_FORMAT_MPEG))
        throw FileError(m_name + ": " + formatName(m_info.format) + " cannot hold 0 frames");
    m_stream->endSound();
    m_file.reset();
    m_stream->finish(m_streamTrailer);
}

/// Opens the written file again before it replaces another file, and throws FileError if it is not complete. libsndfile
/// reports no error for some unreadable files, for example for a FLAC file without sound.
void AudioWriter::verify() {
    SF_VIRTUAL_IO functions = sinkFunctions();
    for (const std::string& fault :
         {faultOfLength(m_info, m_framesWritten), faultOfSize(m_info, functions.get_filelen(&m_sink))})
        if (!fault.empty()) throw FileError(m_name + ": " + fault);
    functions.seek(0, SEEK_SET, &m_sink);
    SF_INFO found = {};
    if ((m_info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_RAW) found = m_info;
    const auto lock = lockSoundFileOpening();
    const SoundFile file(sf_open_virtual(&functions, SFM_READ, &found, &m_sink));
    if (!file)
        throw FileError(m_name + ": " + formatName(m_info.format) + " cannot hold " + std::to_string(m_framesWritten) +
                        " frames: the written file cannot be read back: " + soundFileError(nullptr));
    const bool hasFrames = isExact(m_info.format) ? found.frames == m_framesWritten : found.frames >= m_framesWritten;
    const bool hasRate = !isExact(m_info.format) || found.samplerate == m_info.samplerate;
    if (hasFrames && hasRate && found.channels == m_info.channels) return;
    const auto describe = [](sf_count_t frames, const SF_INFO& info) {
        return std::to_string(frames) + " frames, channels: " + std::to_string(info.channels) + ", " +
               std::to_string(info.samplerate) + " Hz";
    };
    throw FileError(m_name + ": the written file is wrong: it has " + describe(found.frames, found) + " instead of " +
                    describe(m_framesWritten, m_info) + "; use another format");
}

} // namespace eq
