#include "tools/equalize/AudioWriter.h"

#include "tools/common/Errors.h"
#include "tools/equalize/OutputFormat.h"
#include "tools/equalize/SoundFileError.h"

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

void copySpeakers(SNDFILE* from, SNDFILE* to, int channels) {
    std::vector<int> speakers(static_cast<std::size_t>(channels));
    const int size = static_cast<int>(speakers.size() * sizeof(int));
    if (sf_command(from, SFC_GET_CHANNEL_MAP_INFO, speakers.data(), size) == SF_TRUE)
        sf_command(to, SFC_SET_CHANNEL_MAP_INFO, speakers.data(), size);
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
                         Replacing replacing)
    : m_output(place, replacing),
      m_name(place.string()),
      m_info(format),
      m_sink{m_output.descriptor(), 0},
      m_integerBits(integerBits(format.format)) {
    SF_VIRTUAL_IO functions = sinkFunctions();
    auto lock = lockSoundFileOpening();
    m_file.reset(sf_open_virtual(&functions, SFM_WRITE, &m_info, &m_sink));
    if (!m_file) {
        if (m_sink.error != 0) fail();
        throw FileError(m_name + ": cannot be written as " + formatName(format.format) + ": " +
                        soundFileError(nullptr));
    }
    lock.unlock();
    copyStrings(source.handle(), m_file.get());
    copyRecord<SF_BROADCAST_INFO>(source.handle(), m_file.get(), SFC_GET_BROADCAST_INFO, SFC_SET_BROADCAST_INFO);
    copyRecord<SF_INSTRUMENT>(source.handle(), m_file.get(), SFC_GET_INSTRUMENT, SFC_SET_INSTRUMENT);
    copyRecord<SF_CUES>(source.handle(), m_file.get(), SFC_GET_CUE, SFC_SET_CUE);
    copySpeakers(source.handle(), m_file.get(), m_info.channels);
}

void AudioWriter::fail() const {
    if (m_sink.error != 0) throw systemError(m_name, m_sink.error);
    throw FileError(m_name + ": cannot be written: " + soundFileError(m_file.get()));
}

void AudioWriter::write(const float* interleaved, sf_count_t frames) {
    const sf_count_t samples = frames * m_info.channels;
    if (m_integerBits != 0)
        writeIntegers(interleaved, samples);
    else if (sf_write_float(m_file.get(), interleaved, samples) != samples)
        fail();
    if (m_sink.error != 0) fail();
    m_framesWritten += frames;
}

void AudioWriter::writeIntegers(const float* interleaved, sf_count_t samples) {
    // libsndfile takes the upper bits of its integers.
    const int unusedBits = std::numeric_limits<int>::digits + 1 - m_integerBits;
    const double fullScale = std::ldexp(1.0, m_integerBits - 1);
    m_integers.resize(static_cast<std::size_t>(samples));
    std::transform(interleaved, interleaved + samples, m_integers.begin(), [&](float sample) {
        if (std::isnan(sample)) return 0;
        const double rounded = std::nearbyint(sample * fullScale + (m_dither ? m_dither->next() : 0.0));
        const double limited = std::clamp(rounded, -fullScale, fullScale - 1.0);
        if (rounded != limited) {
            ++m_clippedSamples;
            m_peak = std::max(m_peak, static_cast<float>(std::fabs(rounded) / fullScale));
        }
        return static_cast<int>(limited) * (1 << unusedBits);
    });
    if (sf_write_int(m_file.get(), m_integers.data(), samples) != samples) fail();
}

void AudioWriter::finish() {
    m_file.reset();
    if (m_sink.error != 0) throw systemError(m_name, m_sink.error);

    constexpr sf_count_t LongestWithSmallSizes = std::numeric_limits<std::uint32_t>::max();
    const int container = m_info.format & SF_FORMAT_TYPEMASK;
    const bool hasSmallSizes =
        container == SF_FORMAT_WAV || container == SF_FORMAT_WAVEX || container == SF_FORMAT_AIFF;
    if (hasSmallSizes && sinkFunctions().get_filelen(&m_sink) > LongestWithSmallSizes)
        throw FileError(m_name + ": the sound is longer than this kind of file can hold; .rf64, .w64 and .caf can");
    m_output.commit();
}

} // namespace eq
