#include "wedge/OwnModule.h"

#include <atomic>

namespace eq {

namespace {

std::atomic<HINSTANCE> statedModule{nullptr};

HINSTANCE moduleOfThisCode() noexcept {
    HMODULE module = nullptr;
    const DWORD byAddress = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    GetModuleHandleExA(byAddress, reinterpret_cast<LPCSTR>(&moduleOfThisCode), &module);
    return module;
}

} // namespace

HINSTANCE ownModule() noexcept {
    const HINSTANCE stated = statedModule.load(std::memory_order_acquire);
    return stated ? stated : moduleOfThisCode();
}

void setOwnModule(HINSTANCE module) noexcept {
    statedModule.store(module, std::memory_order_release);
}

} // namespace eq
