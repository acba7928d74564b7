#pragma once

#include "plugin/base/AEffect.h"
#include "tools/editor-host/HostedEditor.h"

#include <optional>
#include <string>

namespace eq {

/// What editor-host needs of the platform. Each platform has its own folder.

/// How the window behaves.
struct WindowOptions {
    std::optional<int> sweep;              ///< the parameter that is moved up and down, as by automation
    std::optional<std::string> screenshot; ///< the file of a picture that is taken at the end
    std::optional<double> seconds;         ///< how long the window stays; until it is closed, if not given
    bool log = false;                      ///< print what reaches the host
};

/// Shows the editor in a resizable window until the window is closed or its time is over. Throws FileError when there
/// can be no window.
void showEditor(HostedEditor& editor, const WindowOptions& options);

/// Returns the path of the effect that came with the program.
[[nodiscard]] std::string libraryBesideProgram();

/// Returns the place of a sweep after some seconds, from 0 to 1 and back.
[[nodiscard]] float sweepAt(double seconds) noexcept;

} // namespace eq
