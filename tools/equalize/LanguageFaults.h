#pragma once

#include <filesystem>
#include <string>

namespace eq {

/// Call this function if the library in `folder` creates no instance. Returns the probable reason, which is the first
/// fault of a broken language file in this folder, and the command that shows all faults.
[[nodiscard]] std::string languageFaultText(const std::filesystem::path& folder);

} // namespace eq
