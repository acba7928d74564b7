#pragma once

#include <filesystem>
#include <string>

#include <sndfile.h>

namespace tool {

/// An audio file that is read from its beginning to its end, as interleaved floats.
class AudioReader {
public:
    /// Throws FileError if the file cannot be opened, is no audio file, or is cut off.
    explicit AudioReader(const std::filesystem::path& file);
    ~AudioReader();
    AudioReader(const AudioReader&) = delete;
    AudioReader& operator=(const AudioReader&) = delete;

    [[nodiscard]] const SF_INFO& info() const { return m_info; }
    [[nodiscard]] const std::string& name() const { return m_name; }

    /// Reads up to `frames` frames, and fewer only at the end of the sound. Throws FileError if the sound ends before
    /// it should.
    [[nodiscard]] sf_count_t read(float* interleaved, sf_count_t frames);

    /// For what libsndfile knows of the file beyond its sound.
    [[nodiscard]] SNDFILE* handle() const { return m_file; }

private:
    std::string m_name;
    SF_INFO m_info = {};
    SNDFILE* m_file = nullptr;
    sf_count_t m_framesRead = 0;
};

} // namespace tool
