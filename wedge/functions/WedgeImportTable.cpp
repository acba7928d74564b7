#include "wedge/functions/WedgeEntryPoints.h"

// On Windows a call of an imported function goes through a pointer whose symbol is "__imp_" and the function's
// decorated name. This file defines those symbols itself, as the slots of one table, so the linker never takes the
// imports, and all code of this library that uses the names comes to the wedge. No other module's calls do.

namespace {

/// The slots in order, each with the system's own signature.
struct ImportTable {
#define EQ_MEMBER(MODULE, RESULT, NAME, PARAMETERS, BYTES) decltype(&::NAME) NAME = &eq::wedge::NAME;
    EQ_REPLACED_FUNCTIONS(EQ_MEMBER, EQ_MEMBER)
#undef EQ_MEMBER
};
static_assert(sizeof(ImportTable) == 25 * sizeof(void*));

} // namespace

extern "C" {
extern const ImportTable WedgeImportTable;
// Filled by the linker: other objects' constructors may call through it.
constinit const ImportTable WedgeImportTable;
}

// A symbol for each slot. 32-bit names carry the size of the arguments in bytes.
#ifdef _WIN64
#define EQ_SLOT(MODULE, RESULT, NAME, PARAMETERS, BYTES)                                                               \
    ".globl __imp_" #NAME "\n"                                                                                         \
    ".set __imp_" #NAME ", WedgeImportTable + wedge_slot\n"                                                            \
    ".set wedge_slot, wedge_slot + 8\n"
#else
#define EQ_SLOT(MODULE, RESULT, NAME, PARAMETERS, BYTES)                                                               \
    ".globl __imp__" #NAME "@" #BYTES "\n"                                                                             \
    ".set __imp__" #NAME "@" #BYTES ", _WedgeImportTable + wedge_slot\n"                                               \
    ".set wedge_slot, wedge_slot + 4\n"
#endif

asm(".set wedge_slot, 0\n" EQ_REPLACED_FUNCTIONS(EQ_SLOT, EQ_SLOT));
