// What happens when Windows loads the library. On Linux there is nothing to do.

#include "wedge/OwnModule.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        setOwnModule(module);
        DisableThreadLibraryCalls(module);
    }
    return TRUE;
}
