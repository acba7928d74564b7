#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace eq {

/// One bar for all files, on standard error, if that is a terminal. The bar is removed with the object.
class Progress {
public:
    /// `total` is the sum of the weights of all files.
    Progress(std::uint64_t total, std::size_t files, bool wanted);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

private:
    friend class FileProgress;
    using Clock = std::chrono::steady_clock;

    void add(double weight, bool fileIsDone);

    double m_total;
    std::size_t m_files;
    bool m_isShown;
    std::mutex m_mutex; ///< guards what follows
    double m_done = 0.0;
    std::size_t m_filesDone = 0;
    Clock::time_point m_next;
};

/// The part of one file in the progress of all. The file counts as done when the object is removed.
class FileProgress {
public:
    FileProgress(Progress& progress, std::uint64_t weight);
    ~FileProgress();
    FileProgress(const FileProgress&) = delete;
    FileProgress& operator=(const FileProgress&) = delete;

    /// Sets the number of frames that the file's work comprises.
    void expect(std::int64_t frames);
    void add(std::int64_t frames);

private:
    Progress& m_progress;
    double m_weight;
    double m_weightPerFrame = 0.0;
    double m_shown = 0.0;
};

} // namespace eq
