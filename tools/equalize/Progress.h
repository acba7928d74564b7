#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace eq {

/// A progress bar for all files on standard error, if standard error is a terminal. The destructor removes the bar.
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
    std::mutex m_mutex; ///< guards all members below
    double m_done = 0.0;
    std::size_t m_filesDone = 0;
    Clock::time_point m_next;
};

/// The part of one file in the progress of all files. The destructor counts the file as done.
class FileProgress {
public:
    FileProgress(Progress& progress, std::uint64_t weight);
    ~FileProgress();
    FileProgress(const FileProgress&) = delete;
    FileProgress& operator=(const FileProgress&) = delete;

    /// Sets the number of frames that will be processed for the file.
    void expect(std::int64_t frames);
    /// Adds frames that have been processed.
    void add(std::int64_t frames);

private:
    Progress& m_progress;
    double m_weight;
    double m_weightPerFrame = 0.0;
    double m_shown = 0.0;
};

} // namespace eq
