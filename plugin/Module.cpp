#include "plugin/Module.h"

namespace {

HINSTANCE ownModule = nullptr;

} // namespace

HINSTANCE moduleHandle() noexcept {
    return ownModule;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        ownModule = module;
        DisableThreadLibraryCalls(module);
    }
    return TRUE;
}
