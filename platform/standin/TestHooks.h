#pragma once

// Settings of the stand-in for tests. No product calls them.

#include "platform/standin/Types.h"

#include <string>

namespace eq::standin {

/// Sets the ANSI code page for the whole process. The page must be one that conversions know.
void setAnsiCodepage(UINT codePage) noexcept;

/// Lets a port, "COM1" to "COM4", stand for a device, such as a pseudo-terminal. No port has a device at the start.
void setSerialPortPath(const std::string& port, const std::string& path);

} // namespace eq::standin
