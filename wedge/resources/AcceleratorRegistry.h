#pragma once

#include "platform/CriticalSection.h"
#include "platform/win32.h"

#include <vector>

namespace eq {

/// The accelerator tables that the wedge has created and no caller has destroyed, in order of creation. The destructor
/// destroys the tables that are left.
class AcceleratorRegistry {
public:
    AcceleratorRegistry() = default;
    AcceleratorRegistry(const AcceleratorRegistry&) = delete;
    AcceleratorRegistry& operator=(const AcceleratorRegistry&) = delete;
    ~AcceleratorRegistry();

    void Add(HACCEL table);
    /// Removes the first equal handle. Ignores a handle that is not in the registry.
    void Remove(HACCEL table) noexcept;

private:
    std::vector<HACCEL> m_tables;
    CriticalSection m_lock;
};

} // namespace eq
