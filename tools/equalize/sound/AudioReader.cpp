#include "tools/equalize/sound/AudioReader.h"

#include "support/BinaryReader.h"
#include "support/BinaryWriter.h"
#include "tools/common/Errors.h"
#include "tools/common/Text.h"
#include "tools/equalize/sound/Mpg123Source.h"
#include "tools/equalize/sound/OggLinks.h"
#include "tools/equalize/sound/OutputFormat.h"
#include "tools/equalize/sound/SampleMagnitudes.h"
#include "tools/equalize/sound/SoundDataSize.h"
#include "tools/equalize/sound/SoundFileError.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string_view>

namespace eq {
namespace {

void requireCompleteData(const SoundDataSize& size) {
    if (size.present < size.promised)
        throw FileError("the file ends early: " + std::to_string(size.present) + " of " +
                        std::to_string(size.promised) + " bytes are there; copy or download it again");
}

/// Throws FileError if the header leaves the length open and libsndfile cannot read the sound to the end of the file.
/// In an AIFF file, the size also includes up to 8 bytes in front of the sound.
void requireWholeSound(const SoundDataSize& size, const SF_INFO& info) {
    constexpr std::uint64_t AiffHead = 8;
    if (!size.isOpen) return;
    const auto frames = static_cast<std::uint64_t>(info.frames);
    const auto frameBytes =
        static_cast<std::uint64_t>(bytesPerSample(info.format)) * static_cast<std::uint64_t>(info.channels);
    const bool isWhole =
        frameBytes != 0 ? (frames + 1) * frameBytes + AiffHead > size.present : frames > 0 || size.present == 0;
    if (!isWhole)
        throw FileError("the file is damaged: its header leaves the length open, and " + std::to_string(size.present) +
                        " bytes of sound have only " + std::to_string(frames) + " readable frames");
}

bool isOpen(const PipeLayout& layout) {
    constexpr std::uint64_t OpenAu = 0xFFFFFFFF;
    if (layout.frameBytes == 0) return false;
    if (layout.soundSize == 0) return true;
    return layout.hasChunks ? isPlaceholderLength(layout.soundSize / layout.frameBytes, layout.frameBytes)
                            : layout.soundSize == OpenAu;
}

/// Changes the sizes in the kept header so that libsndfile reads the sound to the end of the pipe. libsndfile does so
/// for an AU file with the largest size, and for a WAV file with the outer size 8 and the sound's size 0. Programs
/// write the sizes 8 and 0 before they know the real sizes.
void leaveSizeOpen(PipeSource& pipe, const PipeLayout& layout) {
    constexpr std::uint64_t OuterSizePosition = 4;
    if (layout.hasChunks) {
        BinaryWriter outerSize(layout.order);
        outerSize.write(std::uint32_t{8});
        pipe.correct(OuterSizePosition, outerSize.written());
        pipe.correct(layout.sizePosition, std::string(4, '\0'));
    } else {
        pipe.correct(layout.sizePosition, std::string(4, '\xFF'));
    }
}

/// Returns the time of a frame as minutes and seconds.
std::string timeOf(sf_count_t frame, int rate) {
    const double seconds = static_cast<double>(frame) / rate;
    const auto minutes = static_cast<sf_count_t>(seconds / 60.0);
    const std::string rest = fixed(seconds - 60.0 * static_cast<double>(minutes), 3);
    return std::to_string(minutes) + (rest.size() < 6 ? ":0" : ":") + rest;
}

} // namespace

AudioReader::AudioReader(SoundInput& input, NonFinite nonFinite)
    : m_input(input), m_name(input.name()), m_nonFinite(nonFinite) {
    try {
        if (PipeSource* const pipe = m_input.pipe()) openPipe(*pipe);
        if (!m_input.pipe()) openFile();
    } catch (const FileError& error) {
        const bool namesFile = std::string_view(error.what()).starts_with(m_name + ":");
        throw FileError(namesFile ? error.what() : m_name + ": " + error.what());
    }
    if (!m_isLengthKnown) m_info.frames = 0;
    m_speakers = speakersOf(m_input.openMetadata(), handle(), m_info);
}

void AudioReader::openFile() {
    const std::string& path = m_input.path();
    const SoundDataSize size = soundDataSizeOf(path).value_or(SoundDataSize{});
    m_metadata = std::make_unique<SndfileSource>(path, size.corrections);
    m_info = m_metadata->info();
    m_isLengthOpen = size.isOpen;
    requireCompleteData(size);
    requireWholeSound(size, m_info);
    if ((m_info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG) {
        m_decoder = std::make_unique<Mpg123Source>(path, m_info.format);
        m_info = m_decoder->info();
    }
    if ((m_info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_OGG)
        if (const std::string fault = faultOfOgg(path); !fault.empty()) throw FileError(fault);
    m_isLengthKnown = m_info.frames != SoundSource::UnknownLength;
    if (!m_isLengthKnown && (m_info.format & SF_FORMAT_TYPEMASK) != SF_FORMAT_FLAC)
        throw FileError("the length of the sound cannot be found: the file is cut off or damaged");
}

void AudioReader::openPipe(PipeSource& pipe) {
    const PipeLayout& layout = m_input.layout();
    const bool isSizeOpen = isOpen(layout);
    // Only one thread at a time can open a sound, so no thread may wait for its pipe during the opening. Receive enough
    // bytes before: to open a sound, the decoders of Ogg and FLAC read fewer than `ReadAhead` bytes after the header.
    constexpr std::size_t ReadAhead = 16384;
    if (layout.soundBegin != 0)
        pipe.limitParsing(layout.soundBegin);
    else
        static_cast<void>(pipe.head(pipe.kept().size() + ReadAhead));
    if (isSizeOpen) leaveSizeOpen(pipe, layout);
    if (layout.isMpeg) {
        pipe.endParsing();
        m_decoder = std::make_unique<Mpg123Source>(pipe);
        m_info = m_decoder->info();
    } else {
        if (pipe.head(4) == "OggS") pipe.watchOgg();
        m_metadata = std::make_unique<SndfileSource>(pipe);
        pipe.endParsing();
        m_info = m_metadata->info();
    }
    pipe.requireSuccess();
    m_isLengthKnown = !isSizeOpen && !layout.isMpeg && m_info.frames != SoundSource::UnknownLength;
    if (m_isLengthKnown && layout.frameBytes != 0 &&
        static_cast<std::uint64_t>(m_info.frames) != layout.soundSize / layout.frameBytes) {
        // libsndfile derives another length from the header. Reading a temporary copy as a file shows which length is
        // right.
        m_metadata.reset();
        m_input.spool("its header contradicts itself");
        return;
    }
    // An MPEG header frame states a number of frames, but more frames may follow.
    if (layout.isMpeg && m_info.frames != SoundSource::UnknownLength) m_leastFrames = m_info.frames;
}

/// Reads the rest of the pipe. Records the names of the chunks after a sound of known size, records that there are MP3
/// tags, and drops all other bytes.
void AudioReader::endPipe(PipeSource& pipe) {
    pipe.requireSuccess();
    const PipeLayout& layout = m_input.layout();
    if (layout.hasChunks && m_isLengthKnown && m_framesRead == m_info.frames) {
        std::uint64_t position = layout.soundBegin + layout.soundSize + layout.soundSize % 2;
        for (;;) {
            std::array<char, 8> bytes;
            pipe.seek(position);
            if (pipe.read(bytes.data(), bytes.size()) < bytes.size()) break;
            BinaryReader header(bytes.data(), bytes.size(), layout.order);
            m_leftInPipe.emplace_back(header.readBytes(4));
            const std::uint64_t size = header.read<std::uint32_t>();
            position += bytes.size() + size + size % 2;
        }
    }
    if (const auto* const mpeg = dynamic_cast<const Mpg123Source*>(m_decoder.get()))
        if (mpeg->hasTagsLeftInPipe() && m_leftInPipe.empty()) m_leftInPipe.emplace_back("tags of MP3");
    pipe.drain();
    pipe.requireSuccess();
}

sf_count_t AudioReader::read(float* interleaved, sf_count_t frames) {
    SoundSource& source = m_decoder ? *m_decoder : *m_metadata;
    const sf_count_t count = source.read(interleaved, frames);
    checkSamples(interleaved, count);
    m_framesRead += count;
    if (PipeSource* const pipe = m_input.pipe(); pipe != nullptr && count < frames) endPipe(*pipe);
    const std::string error = count < frames ? source.error() : "";
    const bool isAtEnd = m_isLengthKnown ? m_framesRead == m_info.frames : error.empty();
    if (count == frames || (isAtEnd && m_framesRead >= m_leastFrames)) return count;
    std::string message = m_name + ": the file ends early: " + std::to_string(m_framesRead);
    if (m_isLengthKnown || m_leastFrames > 0)
        message += " of " + std::to_string(std::max(m_info.frames, m_leastFrames));
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
                            "; use --replace-nan to put 0 in its place");
        interleaved[i] = 0.0F;
        ++m_replacedSamples;
    }
}

} // namespace eq
