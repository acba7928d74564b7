#pragma once

// What tests set and see of the stand-in, where a test on Windows would need the system's help.

#include "platform/standin/Types.h"

#include <cstddef>
#include <string>

namespace standin {

/// Sets the ANSI code page for the whole process. The page must be one that conversions know.
void setAnsiCodepage(UINT codePage) noexcept;

/// Lets a port, "COM1" to "COM4", stand for another device, such as a pseudo-terminal.
void setSerialPortPath(const std::string& port, const std::string& path);

struct ShownMessageBoxes {
    int count = 0;
    std::wstring lastText;
    std::wstring lastCaption;
    WORD lastLanguage = 0;
};

/// The message boxes of this process so far.
ShownMessageBoxes shownMessageBoxes();

/// Objects that were made and not destroyed, in the whole process.
std::size_t liveWindows() noexcept;
std::size_t liveMenus() noexcept;

/// Takes back what InitCommonControlsEx has registered, as if no program had asked for it.
void unregisterCommonControls() noexcept;

} // namespace standin
