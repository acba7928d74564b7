#pragma once

#include "tools/equalize/pipes/PipeSource.h"

#include <cstddef>
#include <string>

namespace eq {

/// The sound of an MPEG stream from a pipe. A decoder would take tags after the sound for further frames, so the last
/// bytes wait until the pipe goes on.
///
///     frames | ... waits, or ends in tags ...
class MpegPipe {
public:
    /// `pipe` must outlive the object.
    explicit MpegPipe(PipeSource& pipe);

    /// Reads up to `count` bytes of the sound, and none only at its end.
    std::size_t read(char* bytes, std::size_t count);

    /// Whether tags have followed the sound.
    [[nodiscard]] bool hasTrailingTags() const { return m_hasTrailingTags; }

private:
    void receive();

    PipeSource& m_pipe;
    std::string m_waiting;
    std::size_t m_ready = 0; ///< bytes in front of those that wait
    bool m_isOver = false;
    bool m_hasTrailingTags = false;
};

} // namespace eq
