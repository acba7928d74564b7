#pragma once

// The one door to Win32. Nothing else in the project includes the system's headers.

#ifdef _WIN32
#include <windows.h>
#endif
