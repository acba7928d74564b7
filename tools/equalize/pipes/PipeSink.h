#pragma once

#include "platform/FileDescriptor.h"
#include "tools/equalize/pipes/OggPages.h"

#include <exception>
#include <functional>
#include <string>
#include <string_view>

#include <sndfile.h>

namespace eq {

/// Sends the bytes of a sound from libsndfile to a pipe or another stream. The header waits until the first samples
/// come, so that tags can be added to it. At the end, libsndfile seeks back and writes the sizes into the header. The
/// object drops these bytes, because a stream cannot seek.
class PipeSink {
public:
    /// Returns the header to send in place of libsndfile's `header`. Called at most once. `requireSuccess` throws its
    /// exceptions.
    using CompleteHeader = std::function<std::string(std::string header)>;

    PipeSink(FileDescriptor stream, std::string name, int format, CompleteHeader complete);

    /// Returns the functions for `sf_open_virtual`. Their data pointer is the PipeSink.
    [[nodiscard]] static SF_VIRTUAL_IO functions();

    /// Allows the object to send the header. Call this function before the first samples are written.
    void beginSound() { m_hasSound = true; }
    /// Drops all later bytes of a plain format (`isPlain`): libsndfile adds bytes that are not sound when it closes the
    /// file. Call this function before libsndfile closes the file.
    void endSound();
    /// Sends the header if no sound has come, sends `trailer`, and closes the stream. Call this function after
    /// libsndfile has closed the file. Throws FileError.
    void finish(std::string_view trailer);

    /// Throws FileError if bytes could not be written. If `CompleteHeader` threw an exception, throws this exception.
    void requireSuccess() const;

private:
    sf_count_t write(std::string_view bytes);
    void append(std::string_view bytes);
    void sendHeader(std::size_t size);
    void send(std::string_view bytes);

    FileDescriptor m_stream;
    std::string m_name;
    int m_format;
    CompleteHeader m_complete;
    std::string m_header; ///< the bytes that are not sent yet
    bool m_hasSound = false;
    bool m_isHeaderSent = false;
    bool m_isEnded = false;
    OggPages m_pages{0};
    sf_count_t m_position = 0;
    sf_count_t m_length = 0;
    int m_error = 0;
    std::exception_ptr m_failure;
};

} // namespace eq
