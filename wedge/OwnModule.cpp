#include "wedge/OwnModule.h"

#include <atomic>

namespace eq {

namespace {

std::atomic<HINSTANCE> stated_module{nullptr};

HINSTANCE moduleOfThisCode() noexcept {
    HMODULE module = nullptr;
    const DWORD by_address = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    GetModuleHandleExA(by_address, reinterpret_cast<LPCSTR>(&moduleOfThisCode), &module);
    return module;
}

} // namespace

HINSTANCE ownModule() noexcept {
    const HINSTANCE stated = stated_module.load(std::memory_order_acquire);
    return stated ? stated : moduleOfThisCode();
}

void setOwnModule(HINSTANCE module) noexcept {
    stated_module.store(module, std::memory_order_release);
}

} // namespace eq
