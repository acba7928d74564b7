#pragma once

#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace eq {

/// The command was given wrongly: exit code 2.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A file, or the plug-in, is not as it must be: exit code 1.
struct FileError : std::runtime_error {
    explicit FileError(const std::string& message, std::vector<std::string> messageDetails = {})
        : std::runtime_error(message), details(std::move(messageDetails)) {}

    std::vector<std::string> details; ///< shown after the message, each on a line
};

/// A FileError from `errno`, as "what: the system's own text".
[[nodiscard]] inline FileError systemError(const std::string& what, int errorNumber) {
    return FileError(what + ": " + std::generic_category().message(errorNumber));
}

} // namespace eq
