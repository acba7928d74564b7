#include "tools/equalize/AudioReader.h"

#include "tools/common/Errors.h"
#include "tools/equalize/SoundDataSize.h"
#include "tools/equalize/SoundFileError.h"

#include <cerrno>
#include <optional>

#include <sys/stat.h>
#include <unistd.h>

namespace eq {
namespace {

/// libsndfile has one message for all that the system can say.
void requireReadableFile(const std::string& name) {
    struct stat file = {};
    if (stat(name.c_str(), &file) != 0 || access(name.c_str(), R_OK) != 0) throw systemError(name, errno);
    if (S_ISDIR(file.st_mode)) throw systemError(name, EISDIR);
}

/// Nothing if the file is fit to be read from its beginning to its end.
std::optional<std::string> faultOf(const std::string& name, const SF_INFO& info) {
    const std::optional<SoundDataSize> size = soundDataSizeOf(name);
    if (size && size->present < size->promised)
        return "the file ends early: " + std::to_string(size->present) + " of " + std::to_string(size->promised) +
               " bytes are there";
    if (info.frames == SF_COUNT_MAX) return "its length cannot be found: it is cut off, damaged, or no file";
    return std::nullopt;
}

} // namespace

AudioReader::AudioReader(const std::filesystem::path& file) : m_name(file.string()) {
    requireReadableFile(m_name);
    {
        const auto lock = lockSoundFileOpening();
        m_file.reset(sf_open(m_name.c_str(), SFM_READ, &m_info));
        if (!m_file) throw FileError(m_name + ": not a readable audio file: " + soundFileError(nullptr));
    }
    if (const std::optional<std::string> fault = faultOf(m_name, m_info)) throw FileError(m_name + ": " + *fault);
}

sf_count_t AudioReader::read(float* interleaved, sf_count_t frames) {
    const sf_count_t count = sf_readf_float(m_file.get(), interleaved, frames);
    m_framesRead += count;
    if (count == frames || m_framesRead == m_info.frames) return count;
    std::string message = m_name + ": the file ends early: " + std::to_string(m_framesRead) + " of " +
                          std::to_string(m_info.frames) + " frames could be read";
    if (sf_error(m_file.get()) != SF_ERR_NO_ERROR) message.append(": ").append(soundFileError(m_file.get()));
    throw FileError(message);
}

} // namespace eq
