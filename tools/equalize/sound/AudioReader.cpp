#include "tools/equalize/sound/AudioReader.h"

#include "tools/common/Errors.h"
#include "tools/common/Text.h"
#include "tools/equalize/sound/Mpg123Source.h"
#include "tools/equalize/sound/OggLinks.h"
#include "tools/equalize/sound/OutputFormat.h"
#include "tools/equalize/sound/SampleMagnitudes.h"
#include "tools/equalize/sound/SoundDataSize.h"
#include "tools/equalize/sound/SoundFileError.h"

#include <cerrno>
#include <cmath>
#include <optional>

#include <sys/stat.h>
#include <unistd.h>

namespace eq {
namespace {

/// libsndfile has one message for all that the system can say.
void requireReadableFile(const std::string& name) {
    struct stat file = {};
    if (stat(name.c_str(), &file) != 0 || access(name.c_str(), R_OK) != 0) throw systemError(name, errno);
    if (S_ISDIR(file.st_mode)) throw systemError(name, EISDIR);
}

void requireCompleteData(const SoundDataSize& size) {
    if (size.present < size.promised)
        throw FileError("the file ends early: " + std::to_string(size.present) + " of " +
                        std::to_string(size.promised) + " bytes are there");
}

/// An AIFF file has up to 8 bytes in front of the sound, which count as its data.
void requireWholeSound(const SoundDataSize& size, const SF_INFO& info) {
    constexpr std::uint64_t AiffHead = 8;
    if (!size.isOpen) return;
    const auto frames = static_cast<std::uint64_t>(info.frames);
    const auto frameBytes =
        static_cast<std::uint64_t>(bytesPerSample(info.format)) * static_cast<std::uint64_t>(info.channels);
    const bool isWhole =
        frameBytes != 0 ? (frames + 1) * frameBytes + AiffHead > size.present : frames > 0 || size.present == 0;
    if (!isWhole)
        throw FileError("its header leaves the length open, and only " + std::to_string(frames) + " frames of " +
                        std::to_string(size.present) + " bytes could be read");
}

/// The time of a frame, as minutes and seconds.
std::string timeOf(sf_count_t frame, int rate) {
    const double seconds = static_cast<double>(frame) / rate;
    const auto minutes = static_cast<sf_count_t>(seconds / 60.0);
    const std::string rest = fixed(seconds - 60.0 * static_cast<double>(minutes), 3);
    return std::to_string(minutes) + (rest.size() < 6 ? ":0" : ":") + rest;
}

} // namespace

AudioReader::AudioReader(const std::filesystem::path& file, NonFinite nonFinite)
    : m_name(file.string()), m_nonFinite(nonFinite) {
    requireReadableFile(m_name);
    try {
        const SoundDataSize size = soundDataSizeOf(m_name).value_or(SoundDataSize{});
        m_metadata = std::make_unique<SndfileSource>(m_name, size.corrections);
        m_info = m_metadata->info();
        m_isLengthOpen = size.isOpen;
        requireCompleteData(size);
        requireWholeSound(size, m_info);
        if ((m_info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG) {
            // All frames are counted first, and a pipe can be read once.
            if (!std::filesystem::is_regular_file(file)) throw FileError("MP3 in a pipe has no length; save it first");
            m_decoder = std::make_unique<Mpg123Source>(m_name, m_info.format);
            m_info = m_decoder->info();
        }
        if ((m_info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_OGG)
            if (const std::string fault = faultOfOgg(m_name); !fault.empty()) throw FileError(fault);
    } catch (const FileError& error) {
        throw FileError(m_name + ": " + error.what());
    }
    m_isLengthKnown = m_info.frames != SoundSource::UnknownLength;
    if (!m_isLengthKnown && (m_info.format & SF_FORMAT_TYPEMASK) != SF_FORMAT_FLAC)
        throw FileError(m_name + ": its length cannot be found: it is cut off, damaged, or no file");
    const int frameBytes = bytesPerSample(m_info.format) * m_info.channels;
    if (!std::filesystem::is_regular_file(file) && frameBytes != 0 &&
        isPlaceholderLength(static_cast<std::uint64_t>(m_info.frames), static_cast<std::uint64_t>(frameBytes)))
        m_isLengthKnown = false;
    if (!m_isLengthKnown) m_info.frames = 0;
    m_speakers = speakersOf(m_name, handle(), m_info);
}

sf_count_t AudioReader::read(float* interleaved, sf_count_t frames) {
    SoundSource& source = m_decoder ? *m_decoder : *m_metadata;
    const sf_count_t count = source.read(interleaved, frames);
    checkSamples(interleaved, count);
    m_framesRead += count;
    const std::string error = count < frames ? source.error() : "";
    const bool isAtEnd = m_isLengthKnown ? m_framesRead == m_info.frames : error.empty();
    if (count == frames || isAtEnd) return count;
    std::string message = m_name + ": the file ends early: " + std::to_string(m_framesRead);
    if (m_isLengthKnown) message += " of " + std::to_string(m_info.frames);
    message += " frames could be read";
    if (!error.empty()) message += ": " + error;
    throw FileError(message);
}

void AudioReader::checkSamples(float* interleaved, sf_count_t frames) {
    const sf_count_t samples = frames * m_info.channels;
    if (std::isfinite(magnitudesOf(interleaved, static_cast<std::size_t>(samples)).largest)) return;
    for (sf_count_t i = 0; i < samples; ++i) {
        if (std::isfinite(interleaved[i])) continue;
        if (m_nonFinite == NonFinite::Refused)
            throw FileError(m_name + ": channel " + std::to_string(i % m_info.channels + 1) + " has a sample that is " +
                            (std::isnan(interleaved[i]) ? "not a number" : "infinite") + " at " +
                            timeOf(m_framesRead + i / m_info.channels, m_info.samplerate) +
                            "; --replace-nan puts 0 in its place");
        interleaved[i] = 0.0F;
        ++m_replacedSamples;
    }
}

} // namespace eq
