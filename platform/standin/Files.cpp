#include "platform/standin/Files.h"

#include "platform/standin/HandleTable.h"
#include "platform/standin/Refuse.h"
#include "platform/standin/TextMatch.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <strings.h>
#include <system_error>
#include <vector>

namespace {

using eq::standin::refuse;

namespace fs = std::filesystem;

/// The entries that matched at the start of the search, in the order of the results.
struct Search {
    std::vector<WIN32_FIND_DATAA> entries;
    std::size_t next = 0;
};

eq::standin::HandleTable<Search>& searches() {
    static eq::standin::HandleTable<Search> table;
    return table;
}

WIN32_FIND_DATAA describe(const fs::path& path, const std::string& name) {
    std::error_code ignored;
    WIN32_FIND_DATAA found{};
    found.dwFileAttributes = fs::is_directory(path, ignored) ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_ARCHIVE;
    name.copy(found.cFileName, sizeof found.cFileName - 1);
    return found;
}

std::vector<WIN32_FIND_DATAA> entriesThatEndIn(const fs::path& folder, std::string_view end) {
    std::vector<WIN32_FIND_DATAA> entries;
    for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (name.size() < MAX_PATH && eq::standin::endsNoCase(name, end))
            entries.push_back(describe(entry.path(), name));
    }
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
        const int order = strcasecmp(a.cFileName, b.cFileName);
        return order != 0 ? order < 0 : std::string_view(a.cFileName) < std::string_view(b.cFileName);
    });
    return entries;
}

/// Returns the system's error code for a path that cannot be reached.
DWORD codeOf(const std::error_code& error) noexcept {
    if (error == std::errc::permission_denied) return ERROR_ACCESS_DENIED;
    if (error == std::errc::filename_too_long) return ERROR_FILENAME_EXCED_RANGE;
    return ERROR_PATH_NOT_FOUND;
}

} // namespace

HANDLE WINAPI FindFirstFileA(LPCSTR pattern, LPWIN32_FIND_DATAA found) noexcept try {
    const fs::path path = pattern;
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    const std::string name = path.filename().string();
    // Only patterns of '*' and a fixed end are supported.
    if (!name.starts_with('*') || name.find_first_of("*?", 1) != std::string::npos)
        return refuse(ERROR_NOT_SUPPORTED, INVALID_HANDLE_VALUE);
    auto search = std::make_shared<Search>();
    search->entries = entriesThatEndIn(folder, std::string_view(name).substr(1));
    if (search->entries.empty()) return refuse(ERROR_FILE_NOT_FOUND, INVALID_HANDLE_VALUE);

    *found = search->entries[search->next++];
    return searches().add(std::move(search));
} catch (const fs::filesystem_error& error) {
    return refuse(codeOf(error.code()), INVALID_HANDLE_VALUE);
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY, INVALID_HANDLE_VALUE);
}

BOOL WINAPI FindNextFileA(HANDLE search, LPWIN32_FIND_DATAA found) noexcept {
    const auto state = searches().find(search);
    const bool more = state && state->next < state->entries.size();
    if (!more) return refuse(state ? ERROR_NO_MORE_FILES : ERROR_INVALID_HANDLE);
    *found = state->entries[state->next++];
    return TRUE;
}

BOOL WINAPI FindClose(HANDLE search) noexcept {
    if (searches().remove(search)) return TRUE;
    return refuse(ERROR_INVALID_HANDLE);
}

DWORD WINAPI GetLongPathNameA(LPCSTR path, LPSTR buffer, DWORD size) noexcept try {
    if (!path) return refuse(ERROR_INVALID_PARAMETER);
    if (*path == '\0') return refuse(ERROR_PATH_NOT_FOUND);

    std::error_code error;
    if (!fs::exists(path, error)) return refuse(error ? codeOf(error) : ERROR_FILE_NOT_FOUND);

    const std::string_view text = path;
    const DWORD needed = static_cast<DWORD>(text.size() + 1);
    if (size < needed) return needed;
    // `path` and `buffer` may be the same.
    std::char_traits<char>::move(buffer, path, needed);
    return needed - 1;
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}
