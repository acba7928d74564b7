#include "wedge/WedgeEntryPoints.h"

// On Windows a call of an imported function goes through a pointer whose symbol is "__imp_" and the function's
// decorated name. This file defines those symbols itself, as the slots of one table, so the linker never takes the
// imports, and all code of this library that uses the names comes to the wedge. No other module's calls do.

namespace {

/// The slots in order, each with the system's own signature.
struct ImportTable {
    decltype(&::LoadResource) loadResource = &wedge::LoadResource;
    decltype(&::LoadStringA) loadStringA = &wedge::LoadStringA;
    decltype(&::LoadStringW) loadStringW = &wedge::LoadStringW;
    decltype(&::LoadAcceleratorsA) loadAcceleratorsA = &wedge::LoadAcceleratorsA;
    decltype(&::LoadAcceleratorsW) loadAcceleratorsW = &wedge::LoadAcceleratorsW;
    decltype(&::DestroyAcceleratorTable) destroyAcceleratorTable = &wedge::DestroyAcceleratorTable;
    decltype(&::LoadMenuA) loadMenuA = &wedge::LoadMenuA;
    decltype(&::LoadMenuW) loadMenuW = &wedge::LoadMenuW;
    decltype(&::DialogBoxParamA) dialogBoxParamA = &wedge::DialogBoxParamA;
    decltype(&::DialogBoxParamW) dialogBoxParamW = &wedge::DialogBoxParamW;
    decltype(&::CreateDialogParamA) createDialogParamA = &wedge::CreateDialogParamA;
    decltype(&::CreateDialogParamW) createDialogParamW = &wedge::CreateDialogParamW;
    decltype(&::FindResourceA) findResourceA = &wedge::FindResourceA;
    decltype(&::FindResourceW) findResourceW = &wedge::FindResourceW;
    decltype(&::FindResourceExA) findResourceExA = &wedge::FindResourceExA;
    decltype(&::FindResourceExW) findResourceExW = &wedge::FindResourceExW;
    decltype(&::MessageBoxA) messageBoxA = &wedge::MessageBoxA;
    decltype(&::MessageBoxW) messageBoxW = &wedge::MessageBoxW;
    decltype(&::MessageBoxExA) messageBoxExA = &wedge::MessageBoxExA;
    decltype(&::MessageBoxExW) messageBoxExW = &wedge::MessageBoxExW;
    decltype(&::CreatePropertySheetPageA) createPropertySheetPageA = &wedge::CreatePropertySheetPageA;
    decltype(&::CreatePropertySheetPageW) createPropertySheetPageW = &wedge::CreatePropertySheetPageW;
    decltype(&::DestroyPropertySheetPage) destroyPropertySheetPage = &wedge::DestroyPropertySheetPage;
    decltype(&::PropertySheetA) propertySheetA = &wedge::PropertySheetA;
    decltype(&::PropertySheetW) propertySheetW = &wedge::PropertySheetW;
};
static_assert(sizeof(ImportTable) == 25 * sizeof(void*));

} // namespace

extern "C" {
extern const ImportTable WedgeImportTable;
// Filled by the linker: other objects' constructors may call through it.
constinit const ImportTable WedgeImportTable;
}

// A symbol for a slot. 32-bit names carry the size of the arguments in bytes.
#ifdef _WIN64
#define EQ_SLOT(NUMBER, NAME, BYTES)                                                                                   \
    asm(".globl __imp_" #NAME "\n"                                                                                     \
        ".set __imp_" #NAME ", WedgeImportTable + 8 * (" #NUMBER " - 1)\n");
#else
#define EQ_SLOT(NUMBER, NAME, BYTES)                                                                                   \
    asm(".globl __imp__" #NAME "@" #BYTES "\n"                                                                         \
        ".set __imp__" #NAME "@" #BYTES ", _WedgeImportTable + 4 * (" #NUMBER " - 1)\n");
#endif

EQ_SLOT(1, LoadResource, 8)
EQ_SLOT(2, LoadStringA, 16)
EQ_SLOT(3, LoadStringW, 16)
EQ_SLOT(4, LoadAcceleratorsA, 8)
EQ_SLOT(5, LoadAcceleratorsW, 8)
EQ_SLOT(6, DestroyAcceleratorTable, 4)
EQ_SLOT(7, LoadMenuA, 8)
EQ_SLOT(8, LoadMenuW, 8)
EQ_SLOT(9, DialogBoxParamA, 20)
EQ_SLOT(10, DialogBoxParamW, 20)
EQ_SLOT(11, CreateDialogParamA, 20)
EQ_SLOT(12, CreateDialogParamW, 20)
EQ_SLOT(13, FindResourceA, 12)
EQ_SLOT(14, FindResourceW, 12)
EQ_SLOT(15, FindResourceExA, 16)
EQ_SLOT(16, FindResourceExW, 16)
EQ_SLOT(17, MessageBoxA, 16)
EQ_SLOT(18, MessageBoxW, 16)
EQ_SLOT(19, MessageBoxExA, 20)
EQ_SLOT(20, MessageBoxExW, 20)
EQ_SLOT(21, CreatePropertySheetPageA, 4)
EQ_SLOT(22, CreatePropertySheetPageW, 4)
EQ_SLOT(23, DestroyPropertySheetPage, 4)
EQ_SLOT(24, PropertySheetA, 4)
EQ_SLOT(25, PropertySheetW, 4)
