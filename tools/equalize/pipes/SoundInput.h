#pragma once

#include "platform/FileDescriptor.h"
#include "tools/equalize/pipes/PipeLayout.h"
#include "tools/equalize/pipes/PipeSource.h"

#include <memory>
#include <string>

namespace eq {

/// The source of the bytes of a sound: a file, a pipe, or the temporary copy of a pipe.
class SoundInput {
public:
    /// Checks that a file can be read, or opens a pipe. Copies the pipe into a temporary file if its format cannot be
    /// read in order. Throws FileError.
    explicit SoundInput(std::string place);

    [[nodiscard]] const std::string& name() const { return m_name; }

    /// Returns the pipe, which the object owns, or null for a file and for a temporary copy.
    [[nodiscard]] PipeSource* pipe() const { return m_pipe.get(); }
    [[nodiscard]] const PipeLayout& layout() const { return m_layout; }
    /// Returns the path of the file or of the temporary copy. This path can be opened several times.
    [[nodiscard]] const std::string& path() const { return m_path; }

    /// Copies the pipe into a temporary file, which can be read several times. Does nothing if there is no pipe. Throws
    /// FileError.
    void spool(const char* reason);
    /// Returns the reason for the temporary copy, or an empty text.
    [[nodiscard]] const std::string& spoolReason() const { return m_spoolReason; }

    /// Opens the bytes that contain all metadata: the file, its temporary copy, or a copy in memory of the pipe's first
    /// bytes. Throws FileError.
    [[nodiscard]] FileDescriptor openMetadata() const;

private:
    void requireKnownFormat();

    std::string m_name;
    std::string m_path;
    PipeLayout m_layout;
    std::unique_ptr<PipeSource> m_pipe;
    FileDescriptor m_spool;
    std::string m_spoolReason;
};

/// Returns the descriptor of a file in memory that contains `bytes`. Throws FileError.
[[nodiscard]] FileDescriptor fileInMemory(std::string_view bytes);

} // namespace eq
