#include "tools/equalize/sound/SndfileSource.h"

#include "tools/common/Errors.h"
#include "tools/equalize/sound/SoundFileError.h"

namespace eq {

SndfileSource::SndfileSource(const std::string& name, std::vector<HeaderCorrection> corrections) {
    const auto lock = lockSoundFileOpening();
    if (corrections.empty()) {
        m_file.reset(sf_open(name.c_str(), SFM_READ, &m_info));
    } else {
        m_patched = std::make_unique<PatchedFile>(name, std::move(corrections));
        SF_VIRTUAL_IO functions = PatchedFile::functions();
        m_file.reset(sf_open_virtual(&functions, SFM_READ, &m_info, m_patched.get()));
    }
    requireOpen();
}

SndfileSource::SndfileSource(PipeSource& pipe) {
    const auto lock = lockSoundFileOpening();
    SF_VIRTUAL_IO functions = PipeSource::functions();
    m_file.reset(sf_open_virtual(&functions, SFM_READ, &m_info, &pipe));
    requireOpen();
}

void SndfileSource::requireOpen() const {
    if (!m_file) throw FileError(std::string("not a readable audio file: ") + soundFileError(nullptr));
}

sf_count_t SndfileSource::read(float* interleaved, sf_count_t frames) {
    return sf_readf_float(m_file.get(), interleaved, frames);
}

std::string SndfileSource::error() const {
    return sf_error(m_file.get()) != SF_ERR_NO_ERROR ? soundFileError(m_file.get()) : "";
}

} // namespace eq
