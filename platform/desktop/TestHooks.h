#pragma once

// The state of windows, menus and message boxes, for tests.

#include "platform/standin/TestHooks.h"

#include <cstddef>
#include <string>

namespace eq::standin {

struct ShownMessageBoxes {
    int count = 0;
    std::wstring lastText;
    std::wstring lastCaption;
    WORD lastLanguage = 0;
};

/// Returns the number of message boxes in this process so far, and the last message box.
ShownMessageBoxes shownMessageBoxes();

/// Returns the number of windows or menus that exist in this process.
std::size_t liveWindows() noexcept;
std::size_t liveMenus() noexcept;

/// Undoes InitCommonControlsEx.
void unregisterCommonControls() noexcept;

} // namespace eq::standin
