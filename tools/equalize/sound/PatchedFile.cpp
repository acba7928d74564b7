#include "tools/equalize/sound/PatchedFile.h"

#include "tools/common/Errors.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace eq {

PatchedFile::PatchedFile(const std::string& name, std::vector<HeaderCorrection> corrections)
    : m_descriptor(open(name.c_str(), O_RDONLY | O_CLOEXEC)), m_corrections(std::move(corrections)) {
    if (!m_descriptor) throw systemError(name, errno);
}

sf_count_t PatchedFile::read(char* bytes, sf_count_t count) {
    const off_t begin = lseek(m_descriptor.get(), 0, SEEK_CUR);
    const ssize_t done = ::read(m_descriptor.get(), bytes, static_cast<std::size_t>(count));
    for (const HeaderCorrection& correction : m_corrections)
        for (std::size_t i = 0; i < correction.bytes.size(); ++i) {
            const auto position = static_cast<off_t>(correction.position + i) - begin;
            if (position >= 0 && position < done) bytes[position] = correction.bytes[i];
        }
    return done < 0 ? 0 : done;
}

SF_VIRTUAL_IO PatchedFile::functions() {
    SF_VIRTUAL_IO functions = {};
    functions.get_filelen = [](void* data) -> sf_count_t {
        struct stat file = {};
        return fstat(static_cast<PatchedFile*>(data)->m_descriptor.get(), &file) == 0 ? file.st_size : -1;
    };
    functions.seek = [](sf_count_t offset, int whence, void* data) -> sf_count_t {
        return lseek(static_cast<PatchedFile*>(data)->m_descriptor.get(), offset, whence);
    };
    functions.tell = [](void* data) -> sf_count_t {
        return lseek(static_cast<PatchedFile*>(data)->m_descriptor.get(), 0, SEEK_CUR);
    };
    functions.read = [](void* bytes, sf_count_t count, void* data) -> sf_count_t {
        return static_cast<PatchedFile*>(data)->read(static_cast<char*>(bytes), count);
    };
    functions.write = [](const void*, sf_count_t, void*) -> sf_count_t { return 0; };
    return functions;
}

} // namespace eq
