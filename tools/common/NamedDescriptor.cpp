#include "tools/common/NamedDescriptor.h"

#include "tools/common/Text.h"

#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace eq {

std::optional<int> descriptorNamedBy(std::filesystem::path place) {
    constexpr int MostLinks = 40;
    std::error_code error;
    // Each entry of /proc/self/fd is a link. A path that is not a link therefore names no descriptor.
    if (!std::filesystem::is_symlink(place, error)) return std::nullopt;
    const std::filesystem::path own = std::filesystem::canonical("/proc/self/fd", error);
    if (error) return std::nullopt;
    for (int link = 0; link < MostLinks; ++link) {
        const std::filesystem::path folder = place.has_parent_path() ? place.parent_path() : ".";
        const std::filesystem::path parent = std::filesystem::canonical(folder, error);
        if (error) return std::nullopt;
        if (parent == own) return parseIndex(place.filename().string());
        const std::filesystem::path target = std::filesystem::read_symlink(place, error);
        if (error) return std::nullopt;
        place = parent / target; // an absolute target replaces `parent`
    }
    return std::nullopt;
}

bool isStandardOutput(const std::filesystem::path& place) {
    const std::optional<int> number = descriptorNamedBy(place);
    struct stat named = {};
    struct stat output = {};
    return number && fstat(*number, &named) == 0 && fstat(STDOUT_FILENO, &output) == 0 &&
           named.st_dev == output.st_dev && named.st_ino == output.st_ino;
}

} // namespace eq
