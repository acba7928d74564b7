#include "wedge/functions/WedgeEntryPoints.h"

// On Windows a call of an imported function goes through a pointer. The symbol of the pointer is "__imp_" and the
// function's decorated name. This file defines these symbols as the slots of one table, so the linker creates no
// imports, and all calls of the names in this library reach the wedge. Calls in other modules are not affected.

namespace {

/// The slots in the order of EQ_REPLACED_FUNCTIONS, each with the signature of the system function.
struct ImportTable {
#define EQ_MEMBER(MODULE, RESULT, NAME, PARAMETERS, BYTES) decltype(&::NAME) NAME = &eq::wedge::NAME;
    EQ_REPLACED_FUNCTIONS(EQ_MEMBER, EQ_MEMBER)
#undef EQ_MEMBER
};
static_assert(sizeof(ImportTable) == 25 * sizeof(void*));

} // namespace

extern "C" {
extern const ImportTable WedgeImportTable;
// The linker fills the table, because constructors in other object files may call functions through the table.
constinit const ImportTable WedgeImportTable;
}

// Defines a symbol for each slot. A 32-bit name includes the size of the arguments in bytes.
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
