#pragma once

#include "platform/Owners.h"
#include "platform/win32.h"

#include <vector>

/// The accelerator tables that the wedge has created and nobody has destroyed, in order of creation. What is left at
/// unload is destroyed then.
class AcceleratorRegistry {
public:
    /// The process's registry.
    static AcceleratorRegistry& instance() noexcept;

    AcceleratorRegistry() = default;
    AcceleratorRegistry(const AcceleratorRegistry&) = delete;
    AcceleratorRegistry& operator=(const AcceleratorRegistry&) = delete;
    ~AcceleratorRegistry();

    void Add(HACCEL table);
    /// Takes the first equal handle out. One that is not there is ignored.
    void Remove(HACCEL table) noexcept;

private:
    std::vector<HACCEL> m_tables;
    platform::CriticalSection m_lock;
};
