#pragma once

// The system functions that a library may replace by its own functions of the same names.
//
// This header declares the plain names. The library that replaces the functions defines them. The system versions are
// in namespace eq::standin::system, where only a look-up by name finds them: GetModuleHandleA and GetProcAddress.

#include "platform/ReplacedFunctions.h"
#include "platform/desktop/Accelerators.h"
#include "platform/desktop/Dialogs.h"
#include "platform/desktop/Keys.h"
#include "platform/desktop/Menus.h"
#include "platform/desktop/PropertySheets.h"
#include "platform/standin/Resources.h"

extern "C" {
#define EQ_DECLARE(MODULE, RESULT, NAME, PARAMETERS, BYTES) RESULT WINAPI NAME PARAMETERS;
EQ_REPLACED_FUNCTIONS(EQ_DECLARE, EQ_DECLARE)
#undef EQ_DECLARE
}

namespace eq::standin::system {
#define EQ_DECLARE(MODULE, RESULT, NAME, PARAMETERS, BYTES) RESULT WINAPI NAME PARAMETERS noexcept;
EQ_REPLACED_FUNCTIONS(EQ_NO_ROW, EQ_DECLARE)
#undef EQ_DECLARE
} // namespace eq::standin::system
