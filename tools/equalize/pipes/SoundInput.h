#pragma once

#include "platform/FileDescriptor.h"
#include "tools/equalize/pipes/PipeLayout.h"
#include "tools/equalize/pipes/PipeSource.h"

#include <memory>
#include <string>

namespace eq {

/// The place from which a sound is read: a file, or a pipe, or the temporary copy of a pipe.
class SoundInput {
public:
    /// Opens a pipe, and copies it into a temporary file if its format cannot be read in order. Throws FileError.
    explicit SoundInput(std::string place);

    [[nodiscard]] const std::string& name() const { return m_name; }

    /// Returns null for a file and for a copy.
    [[nodiscard]] PipeSource* pipe() const { return m_pipe.get(); }
    [[nodiscard]] const PipeLayout& layout() const { return m_layout; }
    /// Returns the path of the file or of the copy, which can be opened many times.
    [[nodiscard]] const std::string& path() const { return m_path; }

    /// Copies the pipe, so that it can be read several times. Nothing to do for a file. Throws FileError.
    void spool(const char* reason);
    /// Returns the reason for the copy, or an empty text.
    [[nodiscard]] const std::string& spoolReason() const { return m_spoolReason; }

    /// Opens the bytes that hold all metadata: the file, or a copy of what comes before the sound of a pipe.
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

/// Returns a file in memory with these bytes. Throws FileError.
[[nodiscard]] FileDescriptor fileInMemory(std::string_view bytes);

} // namespace eq
