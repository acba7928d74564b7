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

/// What happens to samples that are not a number or infinite.
enum class NonFinite {
    Refused,
    Replaced, ///< by 0
};

/// An audio file or a pipe that is read from its beginning to its end, as interleaved floats.
class AudioReader {
public:
    /// `input` must outlive the reader, and a pipe has one reader. Throws FileError if the file cannot be opened, is no
    /// audio file, is cut off, or could not be read to its end.
    explicit AudioReader(SoundInput& input, NonFinite nonFinite = NonFinite::Refused);

    /// Returns rate, channels and format of the file. `frames` is 0 if the length is unknown.
    [[nodiscard]] const SF_INFO& info() const { return m_info; }
    [[nodiscard]] bool isLengthKnown() const { return m_isLengthKnown; }
    /// True if the header leaves the length of the sound open, which then ends with the file.
    [[nodiscard]] bool isLengthOpen() const { return m_isLengthOpen; }
    [[nodiscard]] const std::string& name() const { return m_name; }
    [[nodiscard]] const Speakers& speakers() const { return m_speakers; }

    /// Reads up to `frames` frames, and fewer only at the end of the sound. Throws FileError if the sound ends before
    /// it should, or has a sample that is refused.
    [[nodiscard]] sf_count_t read(float* interleaved, sf_count_t frames);

    [[nodiscard]] sf_count_t replacedSamples() const { return m_replacedSamples; }

    /// For what libsndfile knows of the file beyond its sound.
    /// Null for MPEG from a pipe: its tags are found in the metadata.
    [[nodiscard]] SNDFILE* handle() const { return m_metadata ? m_metadata->handle() : nullptr; }
    /// Opens the bytes that hold all metadata.
    [[nodiscard]] FileDescriptor openMetadata() const { return m_input.openMetadata(); }
    /// Returns the names of the chunks and tags that followed the sound in a pipe, after the sound is read.
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
    std::unique_ptr<SoundSource> m_decoder; ///< null if the source of the metadata is the decoder, too
    SF_INFO m_info = {};
    bool m_isLengthKnown = true;
    bool m_isLengthOpen = false;
    sf_count_t m_leastFrames = 0; ///< that must come if the length is unknown
    Speakers m_speakers;
    sf_count_t m_framesRead = 0;
    sf_count_t m_replacedSamples = 0;
    std::vector<std::string> m_leftInPipe;
};

} // namespace eq
