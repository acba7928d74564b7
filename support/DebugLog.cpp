#include "support/DebugLog.h"

#include "platform/SystemHandles.h"

#include <cstdarg>
#include <cstdio>
#include <iostream>

namespace eq {

namespace {

int debugOutputTarget = DebugToDebugger;

SerialDebugPort& serialPort(int target) {
    static SerialDebugPort ports[] = {SerialDebugPort("COM1"), SerialDebugPort("COM2"), SerialDebugPort("COM3"),
                                      SerialDebugPort("COM4")};
    return ports[target - DebugToCom1];
}

void send(const char* text, int target) {
    switch (target) {
    case DebugToDebugger:
        OutputDebugStringA(text);
        break;
    case DebugToCom1:
    case DebugToCom2:
    case DebugToCom3:
    case DebugToCom4:
        serialPort(target).write(text);
        break;
    case DebugToFileStream:
        DebugFileStream() << text << std::flush; // a failed stream drops the text
        break;
    case DebugToCout:
        std::cout << text;
        break;
    case DebugToClog:
        std::clog << text;
        break;
    default:
        break;
    }
}

/// The security attributes that all callers share. The first call creates them.
class SharedSecurity {
public:
    SECURITY_ATTRIBUTES* attributes() {
        const CriticalSectionEntry entry(lock);
        if (!platformKnown) askPlatform();
        if (!isWindowsNt) return nullptr;
        if (!made) make();
        return &record;
    }

private:
    void askPlatform() {
        OSVERSIONINFOA version = {};
        version.dwOSVersionInfoSize = sizeof version;
        isWindowsNt = GetVersionExA(&version) != FALSE && version.dwPlatformId == VER_PLATFORM_WIN32_NT;
        platformKnown = true;
    }

    void make() {
        InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
        SetSecurityDescriptorDacl(&descriptor, TRUE, nullptr, FALSE);
        record.nLength = sizeof record;
        record.lpSecurityDescriptor = &descriptor;
        record.bInheritHandle = FALSE;
        made = true;
    }

    CriticalSection lock;
    bool platformKnown = false;
    bool isWindowsNt = false;
    bool made = false;
    SECURITY_DESCRIPTOR descriptor = {};
    SECURITY_ATTRIBUTES record = {};
};

// The attributes are created while the library is loaded, before other threads exist.
[[maybe_unused]] const SECURITY_ATTRIBUTES* const AttributesMadeAtLoad = SharedSecurityAttributes();

} // namespace

void DebugPrint(const char* format, ...) noexcept {
    const int target = debugOutputTarget;
    if (target == DebugToNothing) return;
    char text[256] = {};
    std::va_list arguments;
    va_start(arguments, format);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the check does not understand the compiler's va_start
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    try {
        send(text, target);
    } catch (...) {
        // The message is lost: a log message must not cause a failure.
    }
}

int* DebugOutputTargetRef() noexcept {
    return &debugOutputTarget;
}

std::ofstream& DebugFileStream() {
    static std::ofstream stream;
    return stream;
}

SECURITY_ATTRIBUTES* SharedSecurityAttributes() {
    static SharedSecurity security;
    return security.attributes();
}

void SerialDebugPort::write(const char* text) {
    const CriticalSectionEntry entry(portLock);
    if (portHandle == INVALID_HANDLE_VALUE) open();
    if (portHandle == INVALID_HANDLE_VALUE) return;
    for (; *text != '\0'; ++text) {
        if (*text == '\n') writeByte('\r');
        writeByte(*text);
    }
}

void SerialDebugPort::open() {
    File port(CreateFileA(portName, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    if (port && configure(port.get())) portHandle = port.release(); // stays open until the process ends
}

bool SerialDebugPort::configure(HANDLE port) {
    DCB settings = {};
    settings.DCBlength = sizeof settings;
    if (GetCommState(port, &settings) == FALSE) return false;
    settings.BaudRate = CBR_19200;
    settings.ByteSize = 8;
    settings.Parity = NOPARITY;
    settings.StopBits = ONESTOPBIT;
    return SetCommState(port, &settings) != FALSE;
}

void SerialDebugPort::writeByte(char value) {
    DWORD written = 0;
    WriteFile(portHandle, &value, 1, &written, nullptr);
}

} // namespace eq
