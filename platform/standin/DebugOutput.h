#pragma once

// Text for the debugger, which goes to standard error.

#include "platform/standin/Types.h"

extern "C" {

void WINAPI OutputDebugStringA(LPCSTR text) noexcept;
}
