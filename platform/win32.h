#pragma once

// The only include for Win32. No other file includes the system headers, except the screenshot code of editor-host.

#ifdef _WIN32
#include <windows.h>
// The lean set of headers (WIN32_LEAN_AND_MEAN) lacks the common controls, COM's allocator and property sheets.
#include <commctrl.h>
#include <objbase.h>
#include <prsht.h>
#else
// The stand-in: the part of Win32 that this project calls, with the same names, signatures and error codes. Only tests
// and fuzz targets link the functions of desktop/.
#include "platform/desktop/Accelerators.h"
#include "platform/desktop/Dialogs.h"
#include "platform/desktop/Gdi.h"
#include "platform/desktop/Keys.h"
#include "platform/desktop/Menus.h"
#include "platform/desktop/MessageBox.h"
#include "platform/desktop/Messages.h"
#include "platform/desktop/PropertySheets.h"
#include "platform/desktop/ReplacedFunctions.h"
#include "platform/desktop/Trackbar.h"
#include "platform/desktop/Windowing.h"
#include "platform/standin/CodePages.h"
#include "platform/standin/DebugOutput.h"
#include "platform/standin/Errors.h"
#include "platform/standin/Files.h"
#include "platform/standin/Locale.h"
#include "platform/standin/Locks.h"
#include "platform/standin/Memory.h"
#include "platform/standin/Modules.h"
#include "platform/standin/Registry.h"
#include "platform/standin/Resources.h"
#include "platform/standin/SerialPorts.h"
#include "platform/standin/System.h"
#include "platform/standin/Types.h"
#endif
