#include "tools/common/OutputStream.h"

#include "tools/common/Errors.h"
#include "tools/common/NamedDescriptor.h"

#include <cerrno>
#include <optional>
#include <system_error>

#include <fcntl.h>

namespace eq {

bool isStream(const std::filesystem::path& place) {
    if (descriptorNamedBy(place)) return true;
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(place, ignored);
    return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status) &&
           !std::filesystem::is_directory(status);
}

FileDescriptor openStream(const std::filesystem::path& place) {
    const std::optional<int> number = descriptorNamedBy(place);
    FileDescriptor stream(number ? fcntl(*number, F_DUPFD_CLOEXEC, 0) : open(place.c_str(), O_WRONLY | O_CLOEXEC));
    if (!stream) throw systemError(place.string(), errno);
    return stream;
}

} // namespace eq
