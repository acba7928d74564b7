#include "tools/common/SpoolFile.h"

#include "tools/common/Errors.h"

#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace eq {

std::string spoolFolder() {
    const char* const folder = std::getenv("TMPDIR"); // NOLINT(concurrency-mt-unsafe): no thread changes TMPDIR
    return folder != nullptr && *folder != '\0' ? folder : "/tmp";
}

FileDescriptor openSpoolFile() {
    const std::string folder = spoolFolder();
    constexpr mode_t OwnerOnly = 0600;
    FileDescriptor file(open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, OwnerOnly));
    if (file) return file;
    // Some file systems do not support O_TMPFILE.
    std::string name = folder + "/equalize-XXXXXX";
    file = FileDescriptor(mkostemp(name.data(), O_CLOEXEC));
    if (!file)
        throw systemError("a temporary file cannot be created in " + folder + " (TMPDIR selects another folder)",
                          errno);
    unlink(name.c_str());
    return file;
}

} // namespace eq
