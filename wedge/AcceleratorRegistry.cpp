#include "wedge/AcceleratorRegistry.h"

#include "wedge/SystemFunctions.h"

#include <algorithm>

namespace {

// Built while the library loads, ahead of any use, and destroyed while it unloads.
AcceleratorRegistry the_registry;

} // namespace

AcceleratorRegistry& AcceleratorRegistry::instance() noexcept {
    return the_registry;
}

AcceleratorRegistry::~AcceleratorRegistry() {
    for (const HACCEL table : m_tables) systems::DestroyAcceleratorTable(table);
}

void AcceleratorRegistry::Add(HACCEL table) {
    const platform::CriticalSectionEntry entry(m_lock);
    m_tables.push_back(table);
}

void AcceleratorRegistry::Remove(HACCEL table) noexcept {
    const platform::CriticalSectionEntry entry(m_lock);
    const auto found = std::find(m_tables.begin(), m_tables.end(), table);
    if (found != m_tables.end()) m_tables.erase(found);
}
