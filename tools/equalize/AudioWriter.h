#pragma once

#include "tools/common/OutputFile.h"
#include "tools/equalize/AudioReader.h"
#include "tools/equalize/Dither.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <sndfile.h>

namespace eq {

/// An audio file that is written from its beginning to its end, and that takes its place when `finish` has written
/// the last of it.
///
/// Samples that go into integers are rounded to the nearest and limited to full scale; libsndfile would scale by one
/// step less than full scale, or cut the fraction off. What goes into floats keeps values beyond full scale.
class AudioWriter {
public:
    /// Takes titles and the like over from `source`. Throws FileError.
    AudioWriter(const std::filesystem::path& place, const SF_INFO& format, const AudioReader& source,
                Replacing replacing = Replacing::Allowed);

    [[nodiscard]] const SF_INFO& info() const { return m_info; }

    /// Adds noise to what is rounded to integers.
    void useDither() { m_dither.emplace(); }

    /// Throws FileError if not all could be written.
    void write(const float* interleaved, sf_count_t frames);
    void finish();

    [[nodiscard]] sf_count_t framesWritten() const { return m_framesWritten; }
    /// Samples beyond full scale that had to be limited, and the largest of them.
    [[nodiscard]] sf_count_t clippedSamples() const { return m_clippedSamples; }
    [[nodiscard]] float peak() const { return m_peak; }

private:
    /// What libsndfile writes into. It keeps the first error of the system, since libsndfile drops those that come
    /// while it closes a file.
    struct Sink {
        int descriptor;
        int error;
    };
    static SF_VIRTUAL_IO sinkFunctions();

    void writeIntegers(const float* interleaved, sf_count_t samples);
    [[noreturn]] void fail() const;

    OutputFile m_output;
    std::string m_name;
    SF_INFO m_info;
    Sink m_sink;
    SoundFile m_file; // closed before the sink ends
    int m_integerBits;
    std::vector<int> m_integers;
    std::optional<Dither> m_dither;
    sf_count_t m_framesWritten = 0;
    sf_count_t m_clippedSamples = 0;
    float m_peak = 0.0F;
};

} // namespace eq
