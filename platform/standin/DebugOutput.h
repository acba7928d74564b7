#pragma once

// Debugger output, which the stand-in writes to standard error.

#include "platform/standin/Types.h"

extern "C" {

void WINAPI OutputDebugStringA(LPCSTR text) noexcept;
}
