#pragma once

#include "platform/CriticalSection.h"
#include "platform/win32.h"

#include <fstream>

namespace eq {

#ifdef __MINGW_PRINTF_FORMAT
#define EQ_PRINTF_FORMAT __MINGW_PRINTF_FORMAT
#else
#define EQ_PRINTF_FORMAT printf
#endif

/// The targets of `DebugPrint`. Any other value drops the text.
enum DebugOutputTarget : int {
    DebugToNothing = 0,
    DebugToDebugger = 1, // the initial target
    DebugToCom1 = 2,
    DebugToCom2 = 3,
    DebugToCom3 = 4,
    DebugToCom4 = 5,
    DebugToFileStream = 6,
    DebugToCout = 7,
    DebugToClog = 8
};

/// Formats a text as `printf` does, cuts it after 255 characters, and sends it to the selected target. Never throws.
[[gnu::format(EQ_PRINTF_FORMAT, 1, 2)]] void DebugPrint(const char* format, ...) noexcept;

/// Returns the address of the selected target, which callers may read and change. Its value is a `DebugOutputTarget`.
[[nodiscard]] int* DebugOutputTargetRef() noexcept;

/// Returns the stream of `DebugToFileStream`. The caller opens the stream before it selects that target: a message to a
/// closed stream puts the stream into the failed state, and a failed stream drops all messages.
[[nodiscard]] std::ofstream& DebugFileStream();

/// Returns security attributes that grant all access to all users. Each call returns the same record. Returns null on a
/// system without security.
[[nodiscard]] SECURITY_ATTRIBUTES* SharedSecurityAttributes();

/// A serial port at 19200 baud, 8 bits, no parity, one stop bit. The first `write` that finds the port opens the port,
/// which then stays open until the process ends.
class SerialDebugPort {
public:
    /// Keeps `name` without a copy: the text must outlive the object.
    explicit SerialDebugPort(const char* name) : portName(name) {}
    SerialDebugPort(const SerialDebugPort&) = delete;
    SerialDebugPort& operator=(const SerialDebugPort&) = delete;
    virtual ~SerialDebugPort() = default;

    /// Sends a text, with a carriage return before each line feed. The texts of several threads are not mixed. If there
    /// is no such port, the text is dropped.
    void write(const char* text);

private:
    void open();
    static bool configure(HANDLE port);
    void writeByte(char value);

    HANDLE portHandle = INVALID_HANDLE_VALUE;
    const char* portName;
    CriticalSection portLock;
};

} // namespace eq
