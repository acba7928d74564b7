#pragma once

#include "tools/equalize/pipes/PipeSource.h"
#include "tools/equalize/sound/PatchedFile.h"
#include "tools/equalize/sound/SoundSource.h"

#include <memory>
#include <string>
#include <vector>

namespace eq {

struct SoundFileCloser {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using SoundFile = std::unique_ptr<SNDFILE, SoundFileCloser>;

/// A file that libsndfile decodes.
class SndfileSource final : public SoundSource {
public:
    /// Throws FileError, without the file's name, if libsndfile cannot read the file.
    SndfileSource(const std::string& name, std::vector<HeaderCorrection> corrections);
    /// `pipe` must outlive the source.
    explicit SndfileSource(PipeSource& pipe);

    [[nodiscard]] sf_count_t read(float* interleaved, sf_count_t frames) override;
    [[nodiscard]] std::string error() const override;

    /// Returns the open file, for what libsndfile knows beyond the sound.
    [[nodiscard]] SNDFILE* handle() const { return m_file.get(); }

private:
    void requireOpen() const;

    std::unique_ptr<PatchedFile> m_patched;
    SoundFile m_file; // closed before the patched file ends
};

} // namespace eq
