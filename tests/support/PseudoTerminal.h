#pragma once

// A device that stands for a serial port where the system has pseudo-terminals.

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

class PseudoTerminal {
public:
    PseudoTerminal() : master(posix_openpt(O_RDWR | O_NOCTTY)) {
        if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) throw std::runtime_error("no pseudo-terminal");
    }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;
    ~PseudoTerminal() { close(master); }

    /// The device that programs open.
    [[nodiscard]] std::string path() const { return ptsname(master); }

    /// The next `size` bytes that were sent, or fewer if none come for a second.
    [[nodiscard]] std::string receive(std::size_t size) const {
        std::string bytes;
        pollfd waiting = {master, POLLIN, 0};
        while (bytes.size() < size && poll(&waiting, 1, 1000) == 1) {
            char byte = 0;
            if (read(master, &byte, 1) != 1) break;
            bytes += byte;
        }
        return bytes;
    }

    /// What the program has set for the device.
    [[nodiscard]] termios settings() const {
        termios found = {};
        tcgetattr(master, &found);
        return found;
    }

private:
    int master;
};
