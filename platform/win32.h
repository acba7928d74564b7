#pragma once

// The one door to Win32. Nothing else includes the system's headers, but for the pictures that editor-host takes.

#ifdef _WIN32
#include <windows.h>
// The lean set leaves these out: the common controls' messages, COM's memory functions, and property sheets.
#include <commctrl.h>
#include <objbase.h>
#include <prsht.h>
#else
// The stand-in: the part of Win32 that this project calls, behind the same names, signatures and error codes.
#include "platform/standin/Accelerators.h"
#include "platform/standin/CodePages.h"
#include "platform/standin/DebugOutput.h"
#include "platform/standin/Dialogs.h"
#include "platform/standin/Errors.h"
#include "platform/standin/Files.h"
#include "platform/standin/Gdi.h"
#include "platform/standin/Keys.h"
#include "platform/standin/Locale.h"
#include "platform/standin/Locks.h"
#include "platform/standin/Memory.h"
#include "platform/standin/Menus.h"
#include "platform/standin/MessageBox.h"
#include "platform/standin/Messages.h"
#include "platform/standin/Modules.h"
#include "platform/standin/PropertySheets.h"
#include "platform/standin/Registry.h"
#include "platform/standin/ReplacedFunctions.h"
#include "platform/standin/Resources.h"
#include "platform/standin/SerialPorts.h"
#include "platform/standin/System.h"
#include "platform/standin/Trackbar.h"
#include "platform/standin/Types.h"
#include "platform/standin/Windowing.h"
#endif
