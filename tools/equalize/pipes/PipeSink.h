#pragma once

#include "platform/FileDescriptor.h"
#include "tools/equalize/pipes/OggPages.h"

#include <exception>
#include <functional>
#include <string>
#include <string_view>

#include <sndfile.h>

namespace eq {

/// A stream into which libsndfile writes a sound in order. The header waits until the first sound comes, so that it can
/// still be completed; after that nothing goes back: the sizes that libsndfile writes into the header at the end are
/// dropped.
class PipeSink {
public:
    /// Returns the header that is sent in place of libsndfile's. Called once. Exceptions are thrown by
    /// `requireSuccess`.
    using CompleteHeader = std::function<std::string(std::string header)>;

    PipeSink(FileDescriptor stream, std::string name, int format, CompleteHeader complete);

    /// Returns the functions for `sf_open_virtual`, whose data is the object.
    [[nodiscard]] static SF_VIRTUAL_IO functions();

    /// Until then nothing is sent. To be called before the first samples are written.
    void beginSound() { m_hasSound = true; }
    /// To be called before libsndfile closes the file: what it would add to a sound without blocks is no sound.
    void endSound();
    /// Sends a header without sound if there was none, and `trailer`. To be called after libsndfile has closed the
    /// file. Throws FileError.
    void finish(std::string_view trailer);

    /// Throws FileError if not all could be written.
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
    std::string m_header; ///< what waits
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
