#include "platform/standin/SerialPorts.h"

#include "platform/FileDescriptor.h"
#include "platform/standin/KernelObject.h"
#include "platform/standin/Refuse.h"
#include "platform/standin/TestHooks.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace {

using eq::standin::refuse;

class SerialPort : public eq::standin::KernelObject {
public:
    explicit SerialPort(eq::FileDescriptor descriptor) noexcept : m_descriptor(std::move(descriptor)) {}

    int descriptor() const noexcept { return m_descriptor.get(); }

private:
    eq::FileDescriptor m_descriptor;
};

class PortPaths {
public:
    std::string find(const std::string& port) {
        const std::lock_guard guard(m_lock);
        const auto found = m_paths.find(port);
        return found == m_paths.end() ? std::string() : found->second;
    }

    void set(const std::string& port, const std::string& path) {
        const std::lock_guard guard(m_lock);
        m_paths[port] = path;
    }

private:
    std::mutex m_lock;
    std::map<std::string, std::string> m_paths; // empty in products, which therefore open no port
};

PortPaths& portPaths() {
    static PortPaths paths;
    return paths;
}

struct Speed {
    DWORD baudRate;
    speed_t code;
};

constexpr std::array speeds = {
    Speed{110, B110},     Speed{300, B300},     Speed{600, B600},       Speed{1200, B1200},
    Speed{2400, B2400},   Speed{4800, B4800},   Speed{9600, B9600},     Speed{19200, B19200},
    Speed{38400, B38400}, Speed{57600, B57600}, Speed{115200, B115200}, Speed{230400, B230400},
};

struct Width {
    BYTE byteSize;
    tcflag_t code;
};

constexpr std::array widths = {Width{5, CS5}, Width{6, CS6}, Width{7, CS7}, Width{8, CS8}};

DWORD lastSystemCode() noexcept {
    switch (errno) {
    case ENOENT:
    case ENXIO:
    case ENODEV:
        return ERROR_FILE_NOT_FOUND;
    case EACCES:
    case EPERM:
    case EBUSY:
        return ERROR_ACCESS_DENIED;
    case ENOTTY:
        return ERROR_INVALID_FUNCTION;
    case EMFILE:
    case ENFILE:
        return ERROR_TOO_MANY_OPEN_FILES;
    default:
        return ERROR_GEN_FAILURE;
    }
}

/// Opens a device without waiting for a peer. Later reads and writes block. Returns an empty descriptor on failure.
eq::FileDescriptor openDevice(const std::string& path) noexcept {
    eq::FileDescriptor descriptor(::open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK));
    if (descriptor) ::fcntl(descriptor.get(), F_SETFL, O_RDWR);
    return descriptor;
}

void describe(const termios& settings, DCB& state) noexcept {
    const auto speed = std::find_if(speeds.begin(), speeds.end(),
                                    [&](const Speed& row) { return row.code == cfgetospeed(&settings); });
    const auto width = std::find_if(widths.begin(), widths.end(),
                                    [&](const Width& row) { return row.code == (settings.c_cflag & CSIZE); });
    const BYTE parity = (settings.c_cflag & PARODD) != 0 ? ODDPARITY : EVENPARITY;
    state.BaudRate = speed == speeds.end() ? 0 : speed->baudRate;
    state.ByteSize = width->byteSize;
    state.Parity = (settings.c_cflag & PARENB) != 0 ? parity : NOPARITY;
    state.StopBits = (settings.c_cflag & CSTOPB) != 0 ? TWOSTOPBITS : ONESTOPBIT;
}

/// Copies `state` to `settings`. Returns false for a state that ports do not support.
bool apply(const DCB& state, termios& settings) noexcept {
    const auto speed =
        std::find_if(speeds.begin(), speeds.end(), [&](const Speed& row) { return row.baudRate == state.BaudRate; });
    const auto width =
        std::find_if(widths.begin(), widths.end(), [&](const Width& row) { return row.byteSize == state.ByteSize; });
    const bool known = speed != speeds.end() && width != widths.end() && state.Parity <= EVENPARITY &&
                       (state.StopBits == ONESTOPBIT || state.StopBits == TWOSTOPBITS);
    if (!known) return false;

    // A serial port of Win32 sends and receives all bytes unchanged.
    cfmakeraw(&settings);
    cfsetspeed(&settings, speed->code);
    settings.c_cflag &= ~tcflag_t{CSIZE | PARENB | PARODD | CSTOPB};
    settings.c_cflag |= width->code | CLOCAL | CREAD;
    if (state.Parity != NOPARITY) settings.c_cflag |= PARENB;
    if (state.Parity == ODDPARITY) settings.c_cflag |= PARODD;
    if (state.StopBits == TWOSTOPBITS) settings.c_cflag |= CSTOPB;
    return true;
}

} // namespace

namespace eq::standin {

void setSerialPortPath(const std::string& port, const std::string& path) {
    portPaths().set(port, path);
}

} // namespace eq::standin

HANDLE WINAPI CreateFileA(LPCSTR name, DWORD access, DWORD sharing, LPSECURITY_ATTRIBUTES /*security*/, DWORD creation,
                          DWORD attributes, HANDLE model) noexcept try {
    const bool readsAndWrites = access == (GENERIC_READ | GENERIC_WRITE);
    if (!name || !readsAndWrites || sharing != 0 || creation != OPEN_EXISTING || attributes != 0 || model)
        return refuse(ERROR_INVALID_PARAMETER, INVALID_HANDLE_VALUE);
    const std::string path = portPaths().find(name);
    if (path.empty()) return refuse(ERROR_FILE_NOT_FOUND, INVALID_HANDLE_VALUE);

    eq::FileDescriptor descriptor = openDevice(path);
    if (!descriptor) return refuse(lastSystemCode(), INVALID_HANDLE_VALUE);
    const auto port = std::make_shared<SerialPort>(std::move(descriptor));
    // From here on no other caller can open the device.
    if (::ioctl(port->descriptor(), TIOCEXCL) != 0) return refuse(lastSystemCode(), INVALID_HANDLE_VALUE);
    return eq::standin::kernelHandles().add(port);
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY, INVALID_HANDLE_VALUE);
}

BOOL WINAPI GetCommState(HANDLE port, LPDCB state) noexcept {
    const auto serial = eq::standin::findKernelObject<SerialPort>(port);
    if (!serial) return FALSE;
    termios settings{};
    if (tcgetattr(serial->descriptor(), &settings) != 0) return refuse(lastSystemCode());
    describe(settings, *state);
    return TRUE;
}

BOOL WINAPI SetCommState(HANDLE port, LPDCB state) noexcept {
    const auto serial = eq::standin::findKernelObject<SerialPort>(port);
    if (!serial) return FALSE;
    termios settings{};
    if (tcgetattr(serial->descriptor(), &settings) != 0) return refuse(lastSystemCode());
    if (!apply(*state, settings)) return refuse(ERROR_INVALID_PARAMETER);
    return tcsetattr(serial->descriptor(), TCSANOW, &settings) == 0 ? TRUE : refuse(lastSystemCode());
}

BOOL WINAPI WriteFile(HANDLE port, LPCVOID data, DWORD size, LPDWORD written, LPOVERLAPPED overlapped) noexcept {
    if (overlapped || !written) return refuse(ERROR_INVALID_PARAMETER);
    *written = 0;
    const auto serial = eq::standin::findKernelObject<SerialPort>(port);
    if (!serial) return FALSE;
    const char* const bytes = static_cast<const char*>(data);
    while (*written < size) {
        const ssize_t step = ::write(serial->descriptor(), bytes + *written, size - *written);
        if (step < 0 && errno != EINTR) return refuse(ERROR_WRITE_FAULT);
        if (step > 0) *written += static_cast<DWORD>(step);
    }
    return TRUE;
}
