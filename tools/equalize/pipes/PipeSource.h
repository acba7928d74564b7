#pragma once

#include "platform/FileDescriptor.h"
#include "tools/equalize/pipes/OggPageWatch.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include <sndfile.h>

namespace eq {

/// The bytes of a pipe, which libsndfile reads like a file. The first megabyte is kept for the steps back of a parser;
/// a step forward takes place when bytes after it are read.
///
///     | kept, any position | ... gone ... | next byte of the pipe
class PipeSource {
public:
    static constexpr std::size_t KeptBytes = 1U << 20U;

    PipeSource(FileDescriptor pipe, std::string name);

    [[nodiscard]] const std::string& name() const { return m_name; }

    /// Returns the first `count` bytes, and fewer only if the pipe ends or `KeptBytes` is smaller. Only for use before
    /// other bytes are read. Throws FileError.
    [[nodiscard]] std::string_view head(std::size_t count);
    /// Returns the kept bytes that have been read so far.
    [[nodiscard]] const std::string& kept() const { return m_kept; }
    /// Replaces kept bytes.
    void correct(std::uint64_t position, std::string_view bytes);

    /// Until `endParsing`, every read at or beyond this position is a read at the end of the file: a parser that looks
    /// for chunks after the sound finds none, and the sound stays in the pipe.
    void limitParsing(std::uint64_t end) { m_end = end; }
    void endParsing() { m_end = std::numeric_limits<std::uint64_t>::max(); }
    /// Checks the pages of an Ogg stream. To be called before more than the head is read.
    void watchOgg();

    /// Returns the functions for `sf_open_virtual`, whose data is the object. The length of the file is `Length`.
    [[nodiscard]] static SF_VIRTUAL_IO functions();
    static constexpr sf_count_t Length = sf_count_t{1} << 62;

    void seek(std::uint64_t position) { m_position = position; }
    /// Reads at the position, and fewer bytes than `count` only at the end. Errors are thrown by `requireSuccess`.
    std::size_t read(char* bytes, std::size_t count);
    /// Reads and drops the rest of the pipe, so that the program that writes it can finish.
    void drain();
    /// Writes all bytes from the first to the last into a file. Throws FileError.
    void copyAll(int file);

    /// Throws FileError if the pipe could not be read, or a parser went back too far, or the Ogg stream has a fault.
    void requireSuccess() const;

private:
    std::size_t receive(char* bytes, std::size_t count);

    FileDescriptor m_pipe;
    std::string m_name;
    std::string m_kept;
    std::uint64_t m_received = 0;
    std::uint64_t m_position = 0;
    std::uint64_t m_end = KeptBytes;
    int m_error = 0;
    bool m_isOver = false;
    bool m_hasGoneBackTooFar = false;
    bool m_isOgg = false;
    OggPageWatch m_ogg;
};

} // namespace eq
