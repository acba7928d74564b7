#pragma once

#include "tools/equalize/FilePlan.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace eq {

enum class FileOutcome { Written, Skipped, Failed };

/// Works on many files in several threads. A failure of one file is a message, and the other files are not affected.
class Batch {
public:
    /// Equalizes one file. Called in several threads. Exceptions are failures.
    using Work = std::function<FileOutcome(const FileJob&)>;

    /// Returns after all files. `threads` includes the calling thread.
    void run(const std::vector<FileJob>& jobs, std::size_t threads, const Work& work);

    [[nodiscard]] std::size_t count(FileOutcome outcome) const;

private:
    std::vector<FileOutcome> m_outcomes;
};

} // namespace eq
