// What happens when Windows loads the library. On Linux there is nothing to do.

#include "wedge/OwnModule.h"

namespace __gnu_cxx {
// Frees what the C++ library keeps for exceptions when memory is short. No header of the compiler declares it.
void __freeres(); // NOLINT(bugprone-reserved-identifier)
} // namespace __gnu_cxx

namespace {

/// The C++ library is part of this one, and leaves its reserve behind with each unloading.
struct ReserveRelease {
    ~ReserveRelease() { __gnu_cxx::__freeres(); }
};
// Built first, so that it goes last: until then exceptions may need the reserve.
[[gnu::init_priority(101)]] const ReserveRelease LastReserve;

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        eq::setOwnModule(module);
        DisableThreadLibraryCalls(module);
    }
    return TRUE;
}
