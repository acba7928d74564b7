#include "tools/equalize/sound/Mpg123Source.h"

#include "support/BinaryReader.h"
#include "tools/common/Errors.h"
#include "tools/equalize/sound/FileBytes.h"
#include "tools/equalize/sound/TrailingTags.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace eq {
namespace {

FileBytes bytesOf(const FileDescriptor& descriptor) {
    return {descriptor.get(), "the file"};
}

/// Returns whether the header and the side information of a layer III frame are directly before `place`.
bool isInHeaderFrame(std::string_view bytes, std::size_t place) {
    constexpr std::array<std::size_t, 3> Offsets = {4 + 9, 4 + 17, 4 + 32};
    return std::ranges::any_of(Offsets, [&](std::size_t offset) {
        if (place < offset) return false;
        const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[place - offset + i]); };
        return byte(0) == 0xFF && (byte(1) & 0xE6U) == 0xE2;
    });
}

/// Returns the number of MPEG frames that the header frame states, or nothing. The header frame is directly before
/// `firstFrame`, the position of the first frame of sound.
std::optional<std::int64_t> promisedFrames(const FileBytes& file, std::int64_t firstFrame) {
    constexpr std::int64_t LongestFrame = 2881;
    const std::int64_t begin = std::max<std::int64_t>(0, firstFrame - LongestFrame);
    const std::string bytes =
        file.read(static_cast<std::uint64_t>(begin), static_cast<std::size_t>(firstFrame - begin));
    for (const std::string_view identifier : {"Xing", "Info"}) {
        const std::size_t found = bytes.rfind(identifier);
        if (found == std::string::npos || bytes.size() - found < 12 || !isInHeaderFrame(bytes, found)) continue;
        BinaryReader fields(bytes.data() + found + 4, 8, std::endian::big);
        constexpr std::uint32_t HasFrames = 1;
        if ((fields.read<std::uint32_t>() & HasFrames) != 0) return fields.read<std::uint32_t>();
    }
    return std::nullopt;
}

} // namespace

ssize_t Mpg123Source::Stream::read(char* bytes, std::size_t count) {
    if (pipe) return static_cast<ssize_t>(pipe->read(bytes, count));
    const std::int64_t left = length - lseek(descriptor.get(), 0, SEEK_CUR);
    const auto most = static_cast<std::size_t>(std::max<std::int64_t>(0, left));
    return ::read(descriptor.get(), bytes, std::min(count, most));
}

off_t Mpg123Source::Stream::seek(off_t offset, int whence) const {
    if (pipe) return -1;
    if (whence != SEEK_END) return lseek(descriptor.get(), offset, whence);
    return lseek(descriptor.get(), length + offset, SEEK_SET);
}

Mpg123Source::Mpg123Source(PipeSource& pipe) : m_stream{{}, 0, std::make_unique<MpegPipe>(pipe)} {
    open();
    readInfo();
    constexpr std::array Layers = {SF_FORMAT_MPEG_LAYER_I, SF_FORMAT_MPEG_LAYER_II, SF_FORMAT_MPEG_LAYER_III};
    mpg123_frameinfo frame = {};
    if (mpg123_info(m_decoder.get(), &frame) != MPG123_OK || frame.layer < 1 || frame.layer > 3)
        throw FileError(std::string("not a readable audio file: ") + mpg123_strerror(m_decoder.get()));
    m_info.format = SF_FORMAT_MPEG | Layers.at(static_cast<std::size_t>(frame.layer) - 1);
    const off_t length = mpg123_length(m_decoder.get());
    m_info.frames = length > 0 ? length : UnknownLength;
}

Mpg123Source::Mpg123Source(const std::string& name, int format)
    : m_stream{FileDescriptor(::open(name.c_str(), O_RDONLY | O_CLOEXEC)), 0, nullptr} {
    if (!m_stream.descriptor) throw systemError("cannot be opened", errno);
    const FileBytes bytes = bytesOf(m_stream.descriptor);
    m_stream.length = static_cast<std::int64_t>(bytes.length() - trailingTagSize(bytes));
    open();
    readInfo();
    m_info.format = format;
    requireAllFrames();
    m_info.frames = mpg123_length(m_decoder.get());
}

void Mpg123Source::readInfo() {
    long rate = 0;
    int encoding = 0;
    mpg123_getformat(m_decoder.get(), &rate, &m_info.channels, &encoding);
    m_info.samplerate = static_cast<int>(rate);
    m_info.seekable = 1;
}

void Mpg123Source::open() {
    m_decoder.reset(mpg123_new(nullptr, nullptr));
    if (!m_decoder) throw FileError("libmpg123 cannot be used");
    mpg123_handle* const decoder = m_decoder.get();
    mpg123_param(decoder, MPG123_REMOVE_FLAGS, MPG123_AUTO_RESAMPLE, 0.0);
    // Continue after damaged or foreign bytes, however many there are.
    mpg123_param(decoder, MPG123_RESYNC_LIMIT, -1, 0.0);
    mpg123_param(decoder, MPG123_ADD_FLAGS, MPG123_FORCE_FLOAT | MPG123_GAPLESS | MPG123_QUIET, 0.0);
    // The decoder seeks back a few frames when it starts. In a pipe, it needs a buffer for this.
    if (m_stream.pipe) mpg123_param(decoder, MPG123_ADD_FLAGS, MPG123_SEEKBUFFER, 0.0);
    const auto read = [](void* data, void* bytes, size_t count) -> ssize_t {
        return static_cast<Stream*>(data)->read(static_cast<char*>(bytes), count);
    };
    const auto seek = [](void* data, off_t offset, int whence) -> off_t {
        return static_cast<Stream*>(data)->seek(offset, whence);
    };
    mpg123_replace_reader_handle(decoder, read, seek, nullptr);
    long rate = 0;
    int channels = 0;
    int encoding = 0;
    if (mpg123_open_handle(decoder, &m_stream) != MPG123_OK ||
        mpg123_getformat(decoder, &rate, &channels, &encoding) != MPG123_OK)
        throw FileError(std::string("not a readable audio file: ") + mpg123_strerror(decoder));
}

void Mpg123Source::requireAllFrames() {
    mpg123_handle* const decoder = m_decoder.get();
    const std::optional<std::int64_t> promised = promisedFrames(bytesOf(m_stream.descriptor), mpg123_framepos(decoder));
    if (mpg123_scan(decoder) != MPG123_OK)
        throw FileError(std::string("the length of the sound cannot be found: ") + mpg123_strerror(decoder));
    const std::int64_t present = mpg123_framelength(decoder);
    if (promised && present < *promised)
        throw FileError("the file ends early: " + std::to_string(present) + " of " + std::to_string(*promised) +
                        " MPEG frames are there; copy or download it again");
}

sf_count_t Mpg123Source::read(float* interleaved, sf_count_t frames) {
    const std::size_t frameBytes = sizeof(float) * static_cast<std::size_t>(m_info.channels);
    const std::size_t wanted = frameBytes * static_cast<std::size_t>(frames);
    std::size_t filled = 0;
    while (filled < wanted) {
        std::size_t done = 0;
        const int result = mpg123_read(m_decoder.get(), reinterpret_cast<unsigned char*>(interleaved) + filled,
                                       wanted - filled, &done);
        filled += done;
        if (result == MPG123_DONE) break;
        if (result == MPG123_NEW_FORMAT) {
            long rate = 0;
            int channels = 0;
            int encoding = 0;
            mpg123_getformat(m_decoder.get(), &rate, &channels, &encoding);
            if (rate == m_info.samplerate && channels == m_info.channels) continue;
            m_error = "the sampling rate or the number of channels changes";
            break;
        }
        // The reader fails because the last frame of the pipe is cut off. Ignore this failure, because a file with such
        // a frame is accepted, too.
        if (m_stream.pipe && mpg123_errcode(m_decoder.get()) == MPG123_ERR_READER) break;
        if (result != MPG123_OK) {
            m_error = mpg123_strerror(m_decoder.get());
            break;
        }
    }
    return static_cast<sf_count_t>(filled / frameBytes);
}

} // namespace eq
