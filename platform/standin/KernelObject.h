#pragma once

#include "platform/standin/Errors.h"
#include "platform/standin/HandleTable.h"

namespace eq::standin {

/// An object that CloseHandle closes: a mutex or a serial port.
class KernelObject {
public:
    KernelObject() = default;
    KernelObject(const KernelObject&) = delete;
    KernelObject& operator=(const KernelObject&) = delete;
    virtual ~KernelObject() = default;
};

/// Returns the handles of this process. The table outlives every static object whose constructor opens a handle.
HandleTable<KernelObject>& kernelHandles();

/// Returns the object of a handle, or null with ERROR_INVALID_HANDLE if the handle has no object of this kind.
template <typename Kind>
std::shared_ptr<Kind> findKernelObject(HANDLE handle) {
    auto object = std::dynamic_pointer_cast<Kind>(kernelHandles().find(handle));
    if (!object) SetLastError(ERROR_INVALID_HANDLE);
    return object;
}

} // namespace eq::standin
