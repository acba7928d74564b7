#pragma once

// Changes the system's ANSI code page for the life of an object, if the system permits the change.

#include "platform/win32.h"

#ifndef _WIN32
#include "platform/desktop/TestHooks.h"
#endif

namespace eq {

class AnsiCodepage {
public:
    explicit AnsiCodepage([[maybe_unused]] UINT codepage) {
#ifndef _WIN32
        standin::setAnsiCodepage(codepage);
#endif
        m_isSet = GetACP() == codepage;
    }
    ~AnsiCodepage() {
#ifndef _WIN32
        standin::setAnsiCodepage(m_before);
#endif
    }
    AnsiCodepage(const AnsiCodepage&) = delete;
    AnsiCodepage& operator=(const AnsiCodepage&) = delete;

    /// Returns false if the system has another ANSI code page and does not permit a change.
    explicit operator bool() const {
        return m_isSet;
    }

private:
    const UINT m_before = GetACP();
    bool m_isSet = false;
};

} // namespace eq
