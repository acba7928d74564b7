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

/// Lets libsndfile read a pipe like a file. The object keeps the first megabyte, so that a parser can seek back within
/// it. A forward seek only changes the position: the next read skips the bytes in between.
///
///     | kept, any position | ... gone ... | next byte of the pipe
class PipeSource {
public:
    static constexpr std::size_t KeptBytes = 1U << 20U;

    PipeSource(FileDescriptor pipe, std::string name);

    [[nodiscard]] const std::string& name() const { return m_name; }

    /// Returns the first `count` bytes, or fewer if the pipe ends or if `count` exceeds `KeptBytes`. Call this function
    /// only before bytes after the kept bytes are read. Throws FileError.
    [[nodiscard]] std::string_view head(std::size_t count);
    /// Returns the kept bytes that have been read so far.
    [[nodiscard]] const std::string& kept() const { return m_kept; }
    /// Replaces the kept bytes at `position`, so that a parser reads other values.
    void correct(std::uint64_t position, std::string_view bytes);

    /// Makes the pipe appear to end at the position `end`, in bytes, until `endParsing` is called. A parser then finds
    /// no chunks after the sound, and leaves the sound in the pipe. The initial limit is `KeptBytes`.
    void limitParsing(std::uint64_t end) { m_end = end; }
    void endParsing() { m_end = std::numeric_limits<std::uint64_t>::max(); }
    /// Starts a check of the pages of an Ogg stream. Call this function before bytes after the kept bytes are read.
    void watchOgg();

    /// Returns the functions for `sf_open_virtual`. Their data pointer is the PipeSource. They report `Length` as the
    /// length of the file, because the length of a pipe is not known.
    [[nodiscard]] static SF_VIRTUAL_IO functions();
    static constexpr sf_count_t Length = sf_count_t{1} << 62;

    void seek(std::uint64_t position) { m_position = position; }
    /// Reads bytes at the current position. Returns their number, which is smaller than `count` only at the end or
    /// after an error. `requireSuccess` throws the error.
    std::size_t read(char* bytes, std::size_t count);
    /// Reads and drops the rest of the pipe, so that the program that writes into the pipe can finish.
    void drain();
    /// Writes all bytes of the pipe, from the first to the last, into the descriptor `file`. Throws FileError.
    void copyAll(int file);

    /// Throws FileError if the pipe could not be read, if bytes were requested that are no longer kept, or if the Ogg
    /// stream has a fault.
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
