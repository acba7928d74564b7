#pragma once

// COM's allocator.

#include "platform/standin/Types.h"

extern "C" {

LPVOID WINAPI CoTaskMemAlloc(SIZE_T size) noexcept;
void WINAPI CoTaskMemFree(LPVOID block) noexcept;
}
