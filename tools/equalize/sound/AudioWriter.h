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

/// Writes an audio file from its beginning to its end. The file appears at its place when `finish` has completed it and
/// has found all frames in it. The channels are in the order of the output's format. A pipe or another stream receives
/// the sound immediately if the format permits this.
///
/// For integer formats, this class rounds each sample to the nearest value and limits it to full scale. libsndfile
/// would scale the samples by one step less than full scale, or truncate them. Float samples keep values beyond full
/// scale.
class AudioWriter {
public:
    static constexpr double BestQuality = 10.0;

    struct Options {
        std::optional<sf_count_t> frames = std::nullopt; ///< the number of frames to come, if known
        double quality = BestQuality;                    ///< of a lossy format, 0 to BestQuality
        bool dither = false;                             ///< add noise before samples are rounded to integers
        Replacing replacing = Replacing::Allowed;
    };

    /// Opens the output, and copies tags, pictures and chunks from `source`. Throws FileError if the output cannot be
    /// opened, or if the format cannot hold the frames or the speakers.
    AudioWriter(const std::filesystem::path& place, const SF_INFO& format, const AudioReader& source,
                const Options& options);

    [[nodiscard]] const SF_INFO& info() const { return m_info; }

    /// Writes frames, whose channels are in the order of the source. Throws FileError if they cannot be written, or if
    /// a sample is infinite or not a number.
    void write(const float* interleaved, sf_count_t frames);
    /// Completes the file, checks it, and moves it to its place. Throws FileError.
    void finish();

    [[nodiscard]] sf_count_t framesWritten() const { return m_framesWritten; }
    /// Returns the number of samples beyond full scale. Integer formats limit them.
    [[nodiscard]] sf_count_t samplesBeyondFullScale() const { return m_samplesBeyondFullScale; }
    /// Returns the largest magnitude of all samples.
    [[nodiscard]] float peak() const { return m_peak; }
    /// Returns notes for the user, one sentence each, about metadata that the output cannot hold.
    [[nodiscard]] const std::vector<std::string>& notes() const { return m_metadata.notes(); }

private:
    /// The file into which libsndfile writes. The sink keeps the first system error, because libsndfile reports no
    /// error while it closes a file.
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
    SoundFile m_file; // declared after `m_sink` and `m_stream`, so that it is closed first
    int m_integerBits;
    std::vector<int> m_integers;
    std::vector<float> m_ordered;
    std::optional<Dither> m_dither;
    sf_count_t m_framesWritten = 0;
    sf_count_t m_samplesBeyondFullScale = 0;
    float m_peak = 0.0F;
};

} // namespace eq
