#pragma once

#include "tools/equalize/pipes/PipeSource.h"

#include <cstddef>
#include <string>

namespace eq {

/// Reads the sound of an MPEG stream from a pipe, without the tags after it. A decoder would decode these tags as
/// frames. The object therefore holds the last bytes back until more bytes come or the pipe ends.
///
///     frames that can be read | held back: frames, or tags if the pipe ends | bytes still in the pipe
class MpegPipe {
public:
    /// `pipe` must outlive the object.
    explicit MpegPipe(PipeSource& pipe);

    /// Reads up to `count` bytes of the sound and returns their number, which is 0 only at the end.
    std::size_t read(char* bytes, std::size_t count);

    /// Returns whether tags followed the sound. The result is false before the whole sound is read.
    [[nodiscard]] bool hasTrailingTags() const { return m_hasTrailingTags; }

private:
    void receive();

    PipeSource& m_pipe;
    std::string m_waiting;
    std::size_t m_ready = 0; ///< the number of bytes of `m_waiting` that can be read
    bool m_isOver = false;
    bool m_hasTrailingTags = false;
};

} // namespace eq
