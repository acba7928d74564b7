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

/// Decodes a file or a pipe with libsndfile.
class SndfileSource final : public SoundSource {
public:
    /// Opens a file, and reads its header with `corrections`. Throws FileError if libsndfile cannot read the file. The
    /// message does not contain the file's name.
    SndfileSource(const std::string& name, std::vector<HeaderCorrection> corrections);
    /// Reads from a pipe, which must outlive the source. Throws FileError.
    explicit SndfileSource(PipeSource& pipe);

    [[nodiscard]] sf_count_t read(float* interleaved, sf_count_t frames) override;
    [[nodiscard]] std::string error() const override;

    /// Returns libsndfile's handle of the file, for metadata. The source owns the handle.
    [[nodiscard]] SNDFILE* handle() const { return m_file.get(); }

private:
    void requireOpen() const;

    std::unique_ptr<PatchedFile> m_patched;
    SoundFile m_file; // declared after `m_patched`, so that it is closed first
};

} // namespace eq
