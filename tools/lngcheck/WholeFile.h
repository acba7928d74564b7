#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace eq {

namespace lngcheck {

struct WholeFileFault {
    std::string text;
    std::string hint;
};

/// Returns the single cause that makes nearly all lines of a file wrong: UTF-16, bytes that are not text, line ends of
/// old Macs, or a file without texts. Returns nothing for other files. The caller reports this single fault instead of
/// a fault for each line or for each missing text.
[[nodiscard]] std::optional<WholeFileFault> faultOfWholeFile(std::string_view contents);

/// Returns whether the library refuses the file. If the library refuses one file, it uses no language file.
[[nodiscard]] bool isRefusedByLibrary(std::string_view contents, const std::string& path);

} // namespace lngcheck

} // namespace eq
