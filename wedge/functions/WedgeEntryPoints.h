#pragma once

#include "platform/ReplacedFunctions.h"
#include "platform/win32.h"

// The wedge: system functions that this library replaces by its own functions of the same names and signatures. Each
// function finds its resource in the caller's module, lets the language layer rewrite the resource, and passes the
// result to the system. A function reports failure by the same result as in Win32, but sets no last error.
//
// Code that names `wedge::` calls these functions directly. Calls of the plain names reach the same functions: on
// Windows through the import slots of WedgeImportTable.cpp, on Linux because the functions have the plain names as
// their symbols.
//
//   LoadStringA, LoadStringW    always terminate the text inside the buffer; with a size of 0 or less, write nothing
//                               and return 0
//   DialogBoxParamA, ...W       return -1 if there is no such template
//   MessageBox...               show the texts unchanged; the buttons are in the language of the store, or in the
//                               language that the caller names

namespace eq {

#ifdef _WIN32
#define EQ_PLAIN_SYMBOL(NAME)
#else
#define EQ_PLAIN_SYMBOL(NAME) asm(#NAME)
#endif

namespace wedge {

#define EQ_DECLARE(MODULE, RESULT, NAME, PARAMETERS, BYTES) RESULT WINAPI NAME PARAMETERS EQ_PLAIN_SYMBOL(NAME);
EQ_REPLACED_FUNCTIONS(EQ_DECLARE, EQ_DECLARE)
#undef EQ_DECLARE

} // namespace wedge

} // namespace eq
