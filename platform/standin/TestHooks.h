#pragma once

// Settings of the stand-in for tests. No product calls them.

#include "platform/standin/Types.h"

#include <string>

namespace eq::standin {

/// Sets the ANSI code page for the whole process. Conversions must support the page.
void setAnsiCodepage(UINT codePage) noexcept;

/// Assigns a device, such as a pseudo-terminal, to a port, "COM1" to "COM4". No port has a device at the start.
void setSerialPortPath(const std::string& port, const std::string& path);

} // namespace eq::standin
