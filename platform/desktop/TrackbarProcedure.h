#pragma once

#include "platform/desktop/Window.h"

namespace eq::standin {

/// Of the class "msctls_trackbar32". Its windows keep their range and position in bytes of their own.
LRESULT CALLBACK trackbarProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

/// Whether InitCommonControlsEx has been called.
bool areCommonControlsRegistered() noexcept;

inline constexpr int TrackbarExtraBytes = 3 * static_cast<int>(sizeof(LONG_PTR));

} // namespace eq::standin
