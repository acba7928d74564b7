#pragma once

#include "tools/common/OutputFile.h"
#include "tools/equalize/pipes/PipeSink.h"
#include "tools/equalize/sound/AudioReader.h"
#include "tools/equalize/sound/Dither.h"
#include "tools/equalize/sound/MetadataCopy.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sndfile.h>

namespace eq {

/// An audio file that is written from its beginning to its end, and that takes its place when `finish` has written
/// the last of it and has found all frames in it. Its channels are in the order of its format. Into a stream, such as a
/// pipe, the sound goes as it comes, if the format permits it.
///
/// Samples that go into integers are rounded to the nearest and limited to full scale; libsndfile would scale by one
/// step less than full scale, or cut the fraction off. What goes into floats keeps values beyond full scale.
class AudioWriter {
public:
    static constexpr double BestQuality = 10.0;

    struct Options {
        std::optional<sf_count_t> frames = std::nullopt; ///< the number of frames to come, if known
        double quality = BestQuality;                    ///< of a lossy format, from 0
        bool dither = false;                             ///< noise before the rounding to integers
        Replacing replacing = Replacing::Allowed;
    };

    /// Copies tags, pictures and chunks from `source`. Throws FileError, also if the format cannot hold the frames or
    /// the speakers.
    AudioWriter(const std::filesystem::path& place, const SF_INFO& format, const AudioReader& source,
                const Options& options);

    [[nodiscard]] const SF_INFO& info() const { return m_info; }

    /// Throws FileError if not all could be written.
    void write(const float* interleaved, sf_count_t frames);
    void finish();

    [[nodiscard]] sf_count_t framesWritten() const { return m_framesWritten; }
    /// Returns the number of samples beyond full scale. Integer formats limit them.
    [[nodiscard]] sf_count_t samplesBeyondFullScale() const { return m_samplesBeyondFullScale; }
    /// Returns the largest magnitude of all samples.
    [[nodiscard]] float peak() const { return m_peak; }
    /// What the output cannot hold of the source, one sentence each.
    [[nodiscard]] const std::vector<std::string>& notes() const { return m_metadata.notes(); }

private:
    /// What libsndfile writes into. It keeps the first error of the system, since libsndfile drops those that come
    /// while it closes a file.
    struct Sink {
        int descriptor;
        int error;
    };
    static SF_VIRTUAL_IO sinkFunctions();

    [[nodiscard]] const float* inOrder(const float* interleaved, sf_count_t frames);
    void measure(const float* interleaved, sf_count_t samples);
    void setQuality(double quality);
    void verify();
    void writeIntegers(const float* interleaved, sf_count_t samples);
    void openStreamed(const std::filesystem::path& place, std::optional<sf_count_t> frames);
    void finishStream();
    [[noreturn]] void fail() const;

    MetadataCopy m_metadata;
    std::unique_ptr<PipeSink> m_stream;   ///< null for a file
    std::unique_ptr<OutputFile> m_output; ///< null for a stream
    std::string m_streamTrailer;
    std::string m_name;
    SF_INFO m_info;
    ChannelOrder m_order;
    Sink m_sink;
    SoundFile m_file; // closed before the sink ends
    int m_integerBits;
    std::vector<int> m_integers;
    std::vector<float> m_ordered;
    std::optional<Dither> m_dither;
    sf_count_t m_framesWritten = 0;
    sf_count_t m_samplesBeyondFullScale = 0;
    float m_peak = 0.0F;
};

} // namespace eq
