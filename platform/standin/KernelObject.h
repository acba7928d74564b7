#pragma once

#include "platform/standin/Errors.h"
#include "platform/standin/HandleTable.h"

namespace eq::standin {

/// What CloseHandle closes: a mutex or a serial port.
class KernelObject {
public:
    KernelObject() = default;
    KernelObject(const KernelObject&) = delete;
    KernelObject& operator=(const KernelObject&) = delete;
    virtual ~KernelObject() = default;
};

/// The handles of this process. The table outlives every static object that has opened one while it was made.
HandleTable<KernelObject>& kernelHandles();

/// The object behind a handle, or null and ERROR_INVALID_HANDLE if there is none of this kind.
template <typename Kind>
std::shared_ptr<Kind> findKernelObject(HANDLE handle) {
    auto object = std::dynamic_pointer_cast<Kind>(kernelHandles().find(handle));
    if (!object) SetLastError(ERROR_INVALID_HANDLE);
    return object;
}

} // namespace eq::standin
