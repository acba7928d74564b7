#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include <sndfile.h>

namespace eq {

struct SoundFileCloser {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using SoundFile = std::unique_ptr<SNDFILE, SoundFileCloser>;

/// An audio file that is read from its beginning to its end, as interleaved floats.
class AudioReader {
public:
    /// Throws FileError if the file cannot be opened, is no audio file, or is cut off.
    explicit AudioReader(const std::filesystem::path& file);

    [[nodiscard]] const SF_INFO& info() const { return m_info; }
    [[nodiscard]] const std::string& name() const { return m_name; }

    /// Reads up to `frames` frames, and fewer only at the end of the sound. Throws FileError if the sound ends before
    /// it should.
    [[nodiscard]] sf_count_t read(float* interleaved, sf_count_t frames);

    /// For what libsndfile knows of the file beyond its sound.
    [[nodiscard]] SNDFILE* handle() const { return m_file.get(); }

private:
    std::string m_name;
    SF_INFO m_info = {};
    SoundFile m_file;
    sf_count_t m_framesRead = 0;
};

} // namespace eq
