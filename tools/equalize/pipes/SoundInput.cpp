#include "tools/equalize/pipes/SoundInput.h"

#include "tools/common/Errors.h"
#include "tools/common/NamedDescriptor.h"
#include "tools/common/SpoolFile.h"
#include "tools/equalize/pipes/SoundFileOpening.h"

#include <cerrno>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace eq {
namespace {

/// Returns whether the bytes begin with an ID3v2 tag or the header of an MPEG frame. libsndfile must not read MPEG from
/// a pipe, because libsndfile then reads beyond its own buffer.
bool mayBeMpeg(std::string_view head) {
    return head.starts_with("ID3") ||
           (head.size() >= 2 && head[0] == '\xFF' && (static_cast<unsigned char>(head[1]) & 0xE0U) == 0xE0U);
}

} // namespace

SoundInput::SoundInput(std::string place) : m_name(std::move(place)), m_path(m_name) {
    const std::optional<int> number = descriptorNamedBy(m_name);
    struct stat file = {};
    const int result = number ? fstat(*number, &file) : stat(m_name.c_str(), &file);
    if (result != 0) throw systemError(m_name, errno);
    if (S_ISDIR(file.st_mode)) throw systemError(m_name, EISDIR);
    if (!number && access(m_name.c_str(), R_OK) != 0) throw systemError(m_name, errno);
    // A path such as /dev/stdin may name a file that was already read in part. Such a file is treated as a pipe.
    if (S_ISREG(file.st_mode) && (!number || lseek(*number, 0, SEEK_CUR) == 0)) return;
    FileDescriptor pipe(number ? fcntl(*number, F_DUPFD_CLOEXEC, 0) : open(m_name.c_str(), O_RDONLY | O_CLOEXEC));
    if (!pipe) throw systemError(m_name, errno);
    m_pipe = std::make_unique<PipeSource>(std::move(pipe), m_name);
    m_layout = layoutOf(*m_pipe);
    if (m_layout.reading == PipeLayout::Reading::InOrder) return;
    requireKnownFormat();
    spool("its format is not read in order");
}

/// Throws FileError if libsndfile does not recognize the format of a long pipe. The temporary copy of an endless stream
/// without sound would fill the disk.
void SoundInput::requireKnownFormat() {
    const std::string_view head = m_pipe->head(PipeSource::KeptBytes);
    if (head.size() < PipeSource::KeptBytes || mayBeMpeg(head)) return;
    SF_VIRTUAL_IO functions = PipeSource::functions();
    SF_INFO info = {};
    const auto lock = lockSoundFileOpening();
    SNDFILE* const file = sf_open_virtual(&functions, SFM_READ, &info, m_pipe.get());
    if (file == nullptr && sf_error(nullptr) == SF_ERR_UNRECOGNISED_FORMAT)
        throw FileError(m_name + ": not a readable audio file: the contents have no known audio format");
    sf_close(file);
}

void SoundInput::spool(const char* reason) {
    if (!m_pipe) return;
    m_spoolReason = reason;
    m_spool = openSpoolFile();
    m_pipe->copyAll(m_spool.get());
    m_pipe.reset();
    m_path = "/proc/self/fd/" + std::to_string(m_spool.get());
}

FileDescriptor SoundInput::openMetadata() const {
    if (m_pipe) return fileInMemory(m_pipe->kept());
    FileDescriptor file(open(m_path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file) throw systemError(m_name, errno);
    return file;
}

FileDescriptor fileInMemory(std::string_view bytes) {
    FileDescriptor file(memfd_create("equalize", MFD_CLOEXEC));
    if (!file || write(file.get(), bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
        throw systemError("a file in memory", errno);
    return file;
}

} // namespace eq
