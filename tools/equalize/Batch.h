#pragma once

#include "tools/equalize/FilePlan.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace eq {

enum class FileOutcome { Written, Skipped, Failed };

/// Processes many files in several threads. A file that fails causes a message, and does not affect the other files.
class Batch {
public:
    /// A function that processes one file. Several threads call it. An exception means that the file could not be
    /// processed.
    using Work = std::function<FileOutcome(const FileJob&)>;

    /// Calls `work` for each file, and returns after the last one. `threads` is the number of threads, including the
    /// calling thread.
    void run(const std::vector<FileJob>& jobs, std::size_t threads, const Work& work);

    [[nodiscard]] std::size_t count(FileOutcome outcome) const;

private:
    std::vector<FileOutcome> m_outcomes;
};

} // namespace eq
