#include "platform/standin/DebugOutput.h"

#include <cstdio>

void WINAPI OutputDebugStringA(LPCSTR text) noexcept {
    if (text) std::fputs(text, stderr);
}
