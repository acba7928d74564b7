#pragma once

#include "platform/FileDescriptor.h"
#include "tools/equalize/sound/MpegPipe.h"
#include "tools/equalize/sound/SoundSource.h"

#include <cstdint>
#include <memory>
#include <string>

#include <mpg123.h>

namespace eq {

/// An MPEG file (MP3 in most cases) that libmpg123 decodes. libsndfile estimates the length of a file without a header
/// frame from its first frames, and stops there; this class counts all frames first.
class Mpg123Source final : public SoundSource {
public:
    /// `format` is libsndfile's format of the file. Throws FileError, without the file's name, if the file cannot be
    /// decoded, or has fewer frames than its header frame promises.
    Mpg123Source(const std::string& name, int format);

    /// Reads from a pipe, which must outlive the source. The length is unknown without a header frame. Throws
    /// FileError.
    explicit Mpg123Source(PipeSource& pipe);

    /// Whether tags have followed the sound of a pipe.
    [[nodiscard]] bool hasTagsLeftInPipe() const { return m_stream.pipe && m_stream.pipe->hasTrailingTags(); }

    [[nodiscard]] sf_count_t read(float* interleaved, sf_count_t frames) override;
    [[nodiscard]] std::string error() const override { return m_error; }

private:
    struct Deleter {
        void operator()(mpg123_handle* decoder) const { mpg123_delete(decoder); }
    };
    /// The part of the file that the decoder reads: tags after the sound are left out, because libmpg123 searches them
    /// for further frames.
    struct Stream {
        FileDescriptor descriptor;
        std::int64_t length;
        std::unique_ptr<MpegPipe> pipe; ///< in place of the file

        ssize_t read(char* bytes, std::size_t count);
        off_t seek(off_t offset, int whence) const;
    };

    void open();
    void readInfo();
    void requireAllFrames();

    Stream m_stream;
    std::unique_ptr<mpg123_handle, Deleter> m_decoder; // deleted before the stream is closed
    std::string m_error;
};

} // namespace eq
