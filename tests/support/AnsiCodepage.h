#pragma once

// Lets the system's ANSI code page be another one for the length of a test, where the system can be told so.

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

    /// False if the system has another code page and cannot be told.
    explicit operator bool() const {
        return m_isSet;
    }

private:
    const UINT m_before = GetACP();
    bool m_isSet = false;
};

} // namespace eq
