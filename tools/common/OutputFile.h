#pragma once

#include "platform/FileDescriptor.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace eq {

enum class Replacing {
    Allowed,
    Refused, ///< also of a file that appears while the new one is written
};

/// A file that takes its place only when it is complete. Until `commit` it is a temporary file in the folder of its
/// place, and it goes away with the object, or with a signal that ends the process. Threads may have several.
///
/// A symbolic link stays, and what it points to is replaced. In the place of something that is no file, such as a
/// pipe, a device or standard output, nothing is replaced: the complete contents are copied into it.
class OutputFile {
public:
    /// Throws FileError.
    explicit OutputFile(const std::filesystem::path& place, Replacing replacing = Replacing::Allowed);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Open for reading and writing.
    [[nodiscard]] int descriptor() const { return m_descriptor.get(); }

    void write(std::string_view contents);

    /// Brings the contents to the disk and puts the file into its place. Throws FileError, and then what was in the
    /// place is still there.
    void commit();

    /// Writes a whole text file.
    static void write(const std::filesystem::path& place, std::string_view contents,
                      Replacing replacing = Replacing::Allowed);

    /// The handler of signals that end the process.
    static void removeAllAndEnd(int signal);

private:
    void openTemporary();
    void copyIntoPlace();
    void removeTemporary();
    void leaveList();

    std::filesystem::path m_place;
    std::string m_temporary; ///< empty if the contents are to be copied, and after the end
    FileDescriptor m_descriptor;
    OutputFile* m_next = nullptr; ///< in the list of the files with a temporary name
    Replacing m_replacing;
};

/// Returns the file that a chain of symbolic links names. The file need not exist.
[[nodiscard]] std::filesystem::path behindLinks(std::filesystem::path place);

/// Opens each closed standard stream, so that no file takes its number and receives messages. Reading from and writing
/// to such a stream fails. To be called once, at the start.
void holdStandardStreams();

/// Lets every signal that ends the process and can be caught remove the temporary files first, and turns writing into a
/// closed pipe or beyond a size limit into an error. To be called once, at the start.
void removeTemporariesOnSignals();

} // namespace eq
