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

/// Where `DebugPrint` sends its text; any other value drops it.
enum DebugOutputTarget : int {
    DebugToNothing = 0,
    DebugToDebugger = 1, // at the start
    DebugToCom1 = 2,
    DebugToCom2 = 3,
    DebugToCom3 = 4,
    DebugToCom4 = 5,
    DebugToFileStream = 6,
    DebugToCout = 7,
    DebugToClog = 8
};

/// Formats as `printf` does, cuts the text after 255 characters and sends it to the selected target. Never throws.
[[gnu::format(EQ_PRINTF_FORMAT, 1, 2)]] void DebugPrint(const char* format, ...) noexcept;

/// The selected target, for reading and for changing it: a `DebugOutputTarget`.
[[nodiscard]] int* DebugOutputTargetRef() noexcept;

/// The stream of `DebugToFileStream`. Who selects that target opens the stream before the first message: a message to
/// a closed stream leaves the stream failed, and a failed stream takes no messages.
[[nodiscard]] std::ofstream& DebugFileStream();

/// Security attributes that give everybody all access, the same record at each call; null where the system has no
/// security.
[[nodiscard]] SECURITY_ATTRIBUTES* SharedSecurityAttributes();

/// A serial port at 19200 baud, 8 bits, no parity, one stop bit. It is opened by the first text that finds it there,
/// and stays open until the process ends.
class SerialDebugPort {
public:
    /// The name is kept, not copied.
    explicit SerialDebugPort(const char* name) : portName(name) {}
    SerialDebugPort(const SerialDebugPort&) = delete;
    SerialDebugPort& operator=(const SerialDebugPort&) = delete;
    virtual ~SerialDebugPort() = default;

    /// Sends the text, with a carriage return before each line feed. Texts of several threads do not mingle. Without
    /// the port the text is dropped.
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
