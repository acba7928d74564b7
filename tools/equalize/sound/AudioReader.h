#pragma once

#include "tools/equalize/pipes/SoundInput.h"
#include "tools/equalize/sound/SndfileSource.h"
#include "tools/equalize/sound/SoundSource.h"
#include "tools/equalize/sound/Speakers.h"

#include <memory>
#include <string>
#include <vector>

#include <sndfile.h>

namespace eq {

/// The treatment of samples that are infinite or not a number.
enum class NonFinite {
    Refused,  ///< `read` throws FileError
    Replaced, ///< the sample becomes 0
};

/// Reads the sound of an audio file or a pipe from its beginning to its end, as interleaved floats.
class AudioReader {
public:
    /// Opens the sound of `input`, which must outlive the reader. A pipe can have only one reader. Throws FileError if
    /// the input cannot be opened, is not an audio file, is cut off, or cannot be read to its end.
    explicit AudioReader(SoundInput& input, NonFinite nonFinite = NonFinite::Refused);

    /// Returns the rate, channels and format of the file. `frames` is 0 if the length is unknown.
    [[nodiscard]] const SF_INFO& info() const { return m_info; }
    [[nodiscard]] bool isLengthKnown() const { return m_isLengthKnown; }
    /// Returns true if the header of a file leaves the length of the sound open. The sound then ends with the file.
    [[nodiscard]] bool isLengthOpen() const { return m_isLengthOpen; }
    [[nodiscard]] const std::string& name() const { return m_name; }
    [[nodiscard]] const Speakers& speakers() const { return m_speakers; }

    /// Reads frames and returns their number, which is smaller than `frames` only at the end of the sound. Throws
    /// FileError if the sound ends early, or if it has a sample that is refused.
    [[nodiscard]] sf_count_t read(float* interleaved, sf_count_t frames);

    [[nodiscard]] sf_count_t replacedSamples() const { return m_replacedSamples; }

    /// Returns libsndfile's handle of the file, for metadata. The reader owns the handle. Returns null for MPEG from a
    /// pipe, whose tags are in the file of `openMetadata`.
    [[nodiscard]] SNDFILE* handle() const { return m_metadata ? m_metadata->handle() : nullptr; }
    /// Opens a file that contains all metadata. Throws FileError.
    [[nodiscard]] FileDescriptor openMetadata() const { return m_input.openMetadata(); }
    /// Returns the names of the chunks and tags after the sound of a pipe. The list is empty before the whole sound is
    /// read.
    [[nodiscard]] const std::vector<std::string>& leftInPipe() const { return m_leftInPipe; }

private:
    void openFile();
    void openPipe(PipeSource& pipe);
    void endPipe(PipeSource& pipe);
    void checkSamples(float* interleaved, sf_count_t frames);

    SoundInput& m_input;
    std::string m_name;
    NonFinite m_nonFinite;
    std::unique_ptr<SndfileSource> m_metadata;
    std::unique_ptr<SoundSource> m_decoder; ///< null if `m_metadata` also decodes the sound
    SF_INFO m_info = {};
    bool m_isLengthKnown = true;
    bool m_isLengthOpen = false;
    sf_count_t m_leastFrames = 0; ///< the minimum number of frames of a sound of unknown length
    Speakers m_speakers;
    sf_count_t m_framesRead = 0;
    sf_count_t m_replacedSamples = 0;
    std::vector<std::string> m_leftInPipe;
};

} // namespace eq
