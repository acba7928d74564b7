#pragma once

#include "platform/ReplacedFunctions.h"
#include "platform/win32.h"
#include "wedge/resources/SystemFunction.h"

namespace eq {

/// The system functions that the wedge calls from its own functions of the same names.
namespace systems {

#define EQ_SYSTEM_FUNCTION(MODULE, RESULT, NAME, PARAMETERS, BYTES)                                                    \
    inline constinit const SystemFunction<RESULT PARAMETERS> NAME(#MODULE, #NAME);
EQ_REPLACED_FUNCTIONS(EQ_NO_ROW, EQ_SYSTEM_FUNCTION)
#undef EQ_SYSTEM_FUNCTION

} // namespace systems

} // namespace eq
