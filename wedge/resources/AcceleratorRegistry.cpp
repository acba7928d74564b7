#include "wedge/resources/AcceleratorRegistry.h"

#include "wedge/resources/SystemFunctions.h"

#include <algorithm>

namespace eq {

AcceleratorRegistry::~AcceleratorRegistry() {
    for (const HACCEL table : m_tables) systems::DestroyAcceleratorTable(table);
}

void AcceleratorRegistry::Add(HACCEL table) {
    const CriticalSectionEntry entry(m_lock);
    m_tables.push_back(table);
}

void AcceleratorRegistry::Remove(HACCEL table) noexcept {
    const CriticalSectionEntry entry(m_lock);
    const auto found = std::find(m_tables.begin(), m_tables.end(), table);
    if (found != m_tables.end()) m_tables.erase(found);
}

} // namespace eq
