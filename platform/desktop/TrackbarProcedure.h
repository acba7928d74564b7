#pragma once

#include "platform/desktop/Window.h"

namespace eq::standin {

/// The procedure of the class "msctls_trackbar32". A trackbar stores its range and position in its extra bytes.
LRESULT CALLBACK trackbarProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

/// Returns whether InitCommonControlsEx has been called.
bool areCommonControlsRegistered() noexcept;

inline constexpr int TrackbarExtraBytes = 3 * static_cast<int>(sizeof(LONG_PTR));

} // namespace eq::standin
