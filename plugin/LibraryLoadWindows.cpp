// Initializes the library when Windows loads it. On Linux, loading needs no code.

#include "wedge/OwnModule.h"

namespace __gnu_cxx {
// Frees the memory that the C++ library reserves for exceptions when memory is short. No header declares this function.
void __freeres(); // NOLINT(bugprone-reserved-identifier)
} // namespace __gnu_cxx

namespace {

/// Frees the reserve when this library is unloaded. The statically linked C++ library would leak it at each unloading.
struct ReserveRelease {
    ~ReserveRelease() { __gnu_cxx::__freeres(); }
};
// This object is constructed first, so it is destroyed last. Until then, an exception may need the reserve.
[[gnu::init_priority(101)]] const ReserveRelease LastReserve;

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        eq::setOwnModule(module);
        DisableThreadLibraryCalls(module);
    }
    return TRUE;
}
