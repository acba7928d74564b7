#include "tools/equalize/Batch.h"

#include "tools/common/Errors.h"
#include "tools/equalize/StatusLine.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <new>
#include <string>
#include <system_error>
#include <thread>

namespace eq {
namespace {

/// Returns the message with the name of the input, unless the message already names a file of the job.
std::string messageFor(const FileJob& job, const std::string& message) {
    const bool namesFile = message.find(job.input) != std::string::npos ||
                           (!job.output.empty() && message.find(job.output) != std::string::npos);
    return namesFile ? message : job.input + ": " + message;
}

FileOutcome outcomeOf(const FileJob& job, const Batch::Work& work) {
    try {
        return work(job);
    } catch (const std::bad_alloc&) {
        StatusLine::message(messageFor(job, "out of memory"));
    } catch (const FileError& error) {
        StatusLine::message(messageFor(job, error.what()));
        for (const std::string& detail : error.details) StatusLine::message(detail);
    } catch (const std::exception& error) {
        StatusLine::message(messageFor(job, error.what()));
    }
    return FileOutcome::Failed;
}

} // namespace

void Batch::run(const std::vector<FileJob>& jobs, std::size_t threads, const Work& work) {
    m_outcomes.assign(jobs.size(), FileOutcome::Failed);
    std::atomic<std::size_t> next = 0;
    const auto workOnFiles = [&] {
        for (std::size_t index = next++; index < jobs.size(); index = next++)
            m_outcomes[index] = outcomeOf(jobs[index], work);
    };
    std::vector<std::jthread> others;
    try {
        for (std::size_t thread = 1; thread < std::min(threads, jobs.size()); ++thread)
            others.emplace_back(workOnFiles);
    } catch (const std::system_error&) {
        // The system has no more threads. The existing threads process all files.
    }
    workOnFiles();
    others.clear();
}

std::size_t Batch::count(FileOutcome outcome) const {
    return static_cast<std::size_t>(std::ranges::count(m_outcomes, outcome));
}

} // namespace eq
