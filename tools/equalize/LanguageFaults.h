#pragma once

#include <filesystem>
#include <string>

namespace eq {

/// Returns why the library in `folder` may make no instance: the first fault of a language file there that stops the
/// library, and the command that shows all faults.
[[nodiscard]] std::string languageFaultText(const std::filesystem::path& folder);

} // namespace eq
