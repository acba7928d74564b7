#pragma once

#include "plugin/base/AEffect.h"
#include "tools/editor-host/HostedEditor.h"

#include <optional>
#include <string>

namespace eq {

/// The parts of editor-host that depend on the platform. Each platform implements them in its own folder.

/// The options of the window.
struct WindowOptions {
    std::optional<int> sweep;              ///< the parameter to move up and down, as a host's automation does
    std::optional<std::string> screenshot; ///< the PNG file for a picture at the end
    std::optional<double> seconds;         ///< the time until the window closes; nothing: the user closes it
    bool log = false;                      ///< print the keys that the editor passes to the host
};

/// Shows the editor in a resizable window until the user closes the window or its time is over. Throws FileError if the
/// window cannot be created.
void showEditor(HostedEditor& editor, const WindowOptions& options);

/// Returns the path of the effect's library in the folder of the program.
[[nodiscard]] std::string libraryBesideProgram();

/// Returns the value of a sweep at a time in seconds. The sweep moves from 0 to 1 and back.
[[nodiscard]] float sweepAt(double seconds) noexcept;

} // namespace eq
