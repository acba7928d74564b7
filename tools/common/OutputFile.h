#pragma once

#include "platform/FileDescriptor.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace eq {

enum class Replacing {
    Allowed,
    Refused, ///< not even a file that appears during the write is replaced
};

/// A file that appears at its place only when it is complete. Until `commit`, it is a temporary file in the same
/// folder. The destructor removes the temporary file. A signal that ends the process removes it, too, after a call of
/// `removeTemporariesOnSignals`. Several threads may use different objects at the same time.
///
/// A symbolic link stays, and the file to which it points is replaced. A place for which `isStream` returns true, such
/// as a pipe, a device or standard output, is not replaced: `commit` copies the complete contents into it.
class OutputFile {
public:
    /// Creates the temporary file. Throws FileError if the place cannot be written, or if it has a file and `replacing`
    /// is `Refused`.
    explicit OutputFile(const std::filesystem::path& place, Replacing replacing = Replacing::Allowed);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Returns the descriptor of the temporary file, which is open for reading and writing. The object owns the
    /// descriptor.
    [[nodiscard]] int descriptor() const { return m_descriptor.get(); }

    /// Writes bytes at the current position of the descriptor. Throws FileError.
    void write(std::string_view contents);

    /// Flushes the contents to the disk and moves the file to its place. Throws FileError; an existing file at the
    /// place then stays unchanged.
    void commit();

    /// Writes a complete file with these contents. Throws FileError.
    static void write(const std::filesystem::path& place, std::string_view contents,
                      Replacing replacing = Replacing::Allowed);

    /// Signal handler: removes all temporary files, then ends the process by the same signal.
    static void removeAllAndEnd(int signal);

private:
    void openTemporary();
    void copyIntoPlace();
    void removeTemporary();
    void leaveList();

    std::filesystem::path m_place;
    std::string m_temporary; ///< its name; empty for a stream, and after `commit`
    FileDescriptor m_descriptor;
    OutputFile* m_next = nullptr; ///< the next entry in the list of temporary files
    Replacing m_replacing;
};

/// Follows a chain of symbolic links and returns the path at its end. That path need not exist.
[[nodiscard]] std::filesystem::path behindLinks(std::filesystem::path place);

/// Opens each standard stream that is closed. Otherwise the next opened file would get the number of that stream, and
/// would receive messages. A stream that this function opens can be neither read nor written. Call this function once,
/// at the start of the process.
void holdStandardStreams();

/// Installs a handler that removes the temporary files before a signal ends the process. Ignores SIGPIPE and SIGXFSZ,
/// so that a write into a closed pipe or beyond a size limit returns an error. Call this function once, at the start of
/// the process.
void removeTemporariesOnSignals();

} // namespace eq
