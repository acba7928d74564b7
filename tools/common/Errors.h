#pragma once

#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace eq {

/// An error in the command line. The exit code is 2.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A file or the plug-in is damaged or unsuitable, or could not be read or written. The exit code is 1.
struct FileError : std::runtime_error {
    explicit FileError(const std::string& message, std::vector<std::string> messageDetails = {})
        : std::runtime_error(message), details(std::move(messageDetails)) {}

    std::vector<std::string> details; ///< shown after the message, each on its own line
};

/// Returns a FileError with the text `what`, a colon, and the system's message for `errorNumber`, a value of `errno`.
[[nodiscard]] inline FileError systemError(const std::string& what, int errorNumber) {
    return FileError(what + ": " + std::generic_category().message(errorNumber));
}

} // namespace eq
