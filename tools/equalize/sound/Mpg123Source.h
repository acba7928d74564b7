#pragma once

#include "platform/FileDescriptor.h"
#include "tools/equalize/sound/MpegPipe.h"
#include "tools/equalize/sound/SoundSource.h"

#include <cstdint>
#include <memory>
#include <string>

#include <mpg123.h>

namespace eq {

/// Decodes an MPEG file (MP3 in most cases) with libmpg123. If a file has no header frame, libsndfile estimates the
/// length from the first frames, and stops reading there. This class first counts all frames of a file.
class Mpg123Source final : public SoundSource {
public:
    /// Opens a file. `format` is libsndfile's format of the file. Throws FileError if the file cannot be decoded, or if
    /// it has fewer frames than its header frame states. The message does not contain the file's name.
    Mpg123Source(const std::string& name, int format);

    /// Reads from a pipe, which must outlive the source. Without a header frame, the length is unknown. Throws
    /// FileError.
    explicit Mpg123Source(PipeSource& pipe);

    /// Returns whether tags followed the sound of a pipe.
    [[nodiscard]] bool hasTagsLeftInPipe() const { return m_stream.pipe && m_stream.pipe->hasTrailingTags(); }

    [[nodiscard]] sf_count_t read(float* interleaved, sf_count_t frames) override;
    [[nodiscard]] std::string error() const override { return m_error; }

private:
    struct Deleter {
        void operator()(mpg123_handle* decoder) const { mpg123_delete(decoder); }
    };
    /// The part of the file that the decoder reads. It ends before the tags after the sound, because libmpg123 would
    /// search them for frames.
    struct Stream {
        FileDescriptor descriptor;
        std::int64_t length;
        std::unique_ptr<MpegPipe> pipe; ///< null for a file

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
