#pragma once

#include <filesystem>
#include <string>

namespace eq {

/// Returns the reason why the library in `folder` may create no instance: the first fault of a broken language file in
/// this folder. The text also names the command that shows all faults.
[[nodiscard]] std::string languageFaultText(const std::filesystem::path& folder);

} // namespace eq
