#pragma once

#include "platform/win32.h"

namespace eq {

/// Owns a critical section.
class CriticalSection {
public:
    CriticalSection() { InitializeCriticalSection(&m_section); }
    ~CriticalSection() { DeleteCriticalSection(&m_section); }
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    CRITICAL_SECTION& get() noexcept { return m_section; }

private:
    CRITICAL_SECTION m_section;
};

/// Enters a critical section, and leaves it at the end of the scope.
class [[nodiscard]] CriticalSectionEntry {
public:
    explicit CriticalSectionEntry(CRITICAL_SECTION& section) : m_section(section) { EnterCriticalSection(&m_section); }
    explicit CriticalSectionEntry(CriticalSection& section) : CriticalSectionEntry(section.get()) {}
    ~CriticalSectionEntry() { LeaveCriticalSection(&m_section); }
    CriticalSectionEntry(const CriticalSectionEntry&) = delete;
    CriticalSectionEntry& operator=(const CriticalSectionEntry&) = delete;

private:
    CRITICAL_SECTION& m_section;
};

} // namespace eq
