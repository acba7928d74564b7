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

/// Returns the one cause for which nearly all lines of a file are lost: UTF-16, bytes that are no text, line ends of
/// old Macs, no line at all. Without it, a translator would see a fault for each line or for each missing text.
[[nodiscard]] std::optional<WholeFileFault> faultOfWholeFile(std::string_view contents);

/// Whether the library stops at the file, and then reads no other file either.
[[nodiscard]] bool isRefusedByLibrary(std::string_view contents, const std::string& path);

} // namespace lngcheck

} // namespace eq
