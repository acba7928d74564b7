#pragma once

// Test access to windows and message boxes.

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

/// The message boxes of this process so far.
ShownMessageBoxes shownMessageBoxes();

/// Objects that were made and not destroyed, in the whole process.
std::size_t liveWindows() noexcept;
std::size_t liveMenus() noexcept;

/// Undoes InitCommonControlsEx.
void unregisterCommonControls() noexcept;

} // namespace eq::standin
