#include "tools/equalize/AudioWriter.h"

#include "tools/common/Errors.h"
#include "tools/equalize/FormatLimits.h"
#include "tools/equalize/OutputFormat.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <limits>

#include <sys/stat.h>
#include <unistd.h>

namespace eq {
namespace {

void copyStrings(SNDFILE* from, SNDFILE* to) {
    for (int kind = SF_STR_FIRST; kind <= SF_STR_LAST; ++kind)
        if (const char* const text = sf_get_string(from, kind)) sf_set_string(to, kind, text);
}

template <typename Record>
void copyRecord(SNDFILE* from, SNDFILE* to, int get, int set) {
    Record record = {};
    if (sf_command(from, get, &record, sizeof record) == SF_TRUE) sf_command(to, set, &record, sizeof record);
}

ChannelOrder channelOrderFor(const std::string& name, const SF_INFO& format, const AudioReader& source) {
    std::optional<ChannelOrder> order = orderFor(format, source.info(), source.speakers());
    if (order) return *std::move(order);
    throw FileError(name + ": " + formatName(format.format) + " has no place for the speakers of the input's " +
                    std::to_string(format.channels) + " channels; .wav, .caf and .aiff have one");
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
                         std::optional<sf_count_t> frames)
    : m_output(place),
      m_name(place.string()),
      m_info(format),
      m_order(channelOrderFor(m_name, format, source)),
      m_sink{m_output.descriptor(), 0},
      m_integerBits(integerBits(format.format)) {
    if (const std::string fault = frames ? faultOfLength(m_info, *frames) : ""; !fault.empty())
        throw FileError(m_name + ": " + fault);
    m_info.format = formatWithSpeakers(m_info, m_order.speakers);
    SF_VIRTUAL_IO functions = sinkFunctions();
    m_file.reset(sf_open_virtual(&functions, SFM_WRITE, &m_info, &m_sink));
    if (!m_file) {
        if (m_sink.error != 0) fail();
        throw FileError(m_name + ": cannot be written as " + formatName(format.format) + ": " + sf_strerror(nullptr));
    }
    copyStrings(source.handle(), m_file.get());
    copyRecord<SF_BROADCAST_INFO>(source.handle(), m_file.get(), SFC_GET_BROADCAST_INFO, SFC_SET_BROADCAST_INFO);
    copyRecord<SF_INSTRUMENT>(source.handle(), m_file.get(), SFC_GET_INSTRUMENT, SFC_SET_INSTRUMENT);
    copyRecord<SF_CUES>(source.handle(), m_file.get(), SFC_GET_CUE, SFC_SET_CUE);
    if (!m_order.speakers.empty())
        sf_command(m_file.get(), SFC_SET_CHANNEL_MAP_INFO, m_order.speakers.data(),
                   static_cast<int>(m_order.speakers.size() * sizeof(int)));
}

void AudioWriter::fail() const {
    if (m_sink.error != 0) throw systemError(m_name, m_sink.error);
    throw FileError(m_name + ": cannot be written: " + sf_strerror(m_file.get()));
}

void AudioWriter::write(const float* interleaved, sf_count_t frames) {
    const sf_count_t samples = frames * m_info.channels;
    const float* const ordered = inOrder(interleaved, frames);
    measure(ordered, samples);
    if (m_integerBits != 0)
        writeIntegers(ordered, samples);
    else if (sf_write_float(m_file.get(), ordered, samples) != samples)
        fail();
    if (m_sink.error != 0) fail();
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
    std::for_each(interleaved, interleaved + samples, [this](float sample) {
        const float size = std::fabs(sample);
        if (size <= 1.0F) return;
        if (!std::isfinite(size))
            throw FileError(m_name + ": the equalized sound is not finite: the input is too far beyond full scale");
        ++m_samplesBeyondFullScale;
        m_peak = std::max(m_peak, size);
    });
}

void AudioWriter::writeIntegers(const float* interleaved, sf_count_t samples) {
    // libsndfile takes the upper bits of its integers.
    const int unusedBits = std::numeric_limits<int>::digits + 1 - m_integerBits;
    const double fullScale = std::ldexp(1.0, m_integerBits - 1);
    m_integers.resize(static_cast<std::size_t>(samples));
    std::transform(interleaved, interleaved + samples, m_integers.begin(), [&](float sample) {
        const double limited = std::clamp(std::nearbyint(sample * fullScale), -fullScale, fullScale - 1.0);
        return static_cast<int>(limited) * (1 << unusedBits);
    });
    if (sf_write_int(m_file.get(), m_integers.data(), samples) != samples) fail();
}

void AudioWriter::finish() {
    m_file.reset();
    if (m_sink.error != 0) throw systemError(m_name, m_sink.error);
    requireAllFrames();
    m_output.commit();
}

/// libsndfile writes some files that nobody can read, for example a FLAC file without sound, and reports no error.
void AudioWriter::requireAllFrames() {
    SF_VIRTUAL_IO functions = sinkFunctions();
    for (const std::string& fault :
         {faultOfLength(m_info, m_framesWritten), faultOfSize(m_info, functions.get_filelen(&m_sink))})
        if (!fault.empty()) throw FileError(m_name + ": " + fault);
    functions.seek(0, SEEK_SET, &m_sink);
    SF_INFO found = {};
    if ((m_info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_RAW) found = m_info;
    const SoundFile file(sf_open_virtual(&functions, SFM_READ, &found, &m_sink));
    if (!file || found.frames < m_framesWritten)
        throw FileError(
            m_name + ": " + formatName(m_info.format) + " cannot hold " + std::to_string(m_framesWritten) +
            " frames: " + (file ? std::to_string(found.frames) + " would be there" : "the file would not be readable"));
}

} // namespace eq
