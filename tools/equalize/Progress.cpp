#include "tools/equalize/Progress.h"

#include "tools/equalize/StatusLine.h"

#include <algorithm>
#include <string>

namespace eq {
namespace {

/// Returns the line, such as "[####....]  37 % 12/34". On a narrow terminal, the line lacks the parts that do not fit.
std::string lineOf(double share, std::size_t filesDone, std::size_t files, int columns) {
    constexpr int LongestBar = 40;
    constexpr int ShortestBar = 4;
    const std::string percent = std::to_string(static_cast<int>(share * 100.0)) + " %";
    const std::string count = files < 2 ? "" : " " + std::to_string(filesDone) + "/" + std::to_string(files);
    // "100 %" is the longest percentage. The last column stays free, so that no terminal starts a new line.
    const int place = columns - 1 - static_cast<int>(std::string("[] 100 %").size() + count.size());
    std::string line;
    if (place >= ShortestBar) {
        const int length = std::min(place, LongestBar);
        const int filled = static_cast<int>(share * length);
        line = "[" + std::string(static_cast<std::size_t>(filled), '#') +
               std::string(static_cast<std::size_t>(length - filled), '.') + "] ";
    }
    line += std::string(5 - std::min<std::size_t>(percent.size(), 5), ' ') + percent + count;
    return line.substr(0, static_cast<std::size_t>(std::max(columns - 1, 0)));
}

} // namespace

Progress::Progress(std::uint64_t total, std::size_t files, bool wanted)
    : m_total(std::max(static_cast<double>(total), 1.0)),
      m_files(files),
      m_isShown(wanted && StatusLine::isTerminal()),
      m_next(Clock::now()) {}

Progress::~Progress() {
    if (m_isShown) StatusLine::show("");
}

void Progress::add(double weight, bool fileIsDone) {
    if (!m_isShown) return;
    const std::lock_guard lock(m_mutex);
    m_done += weight;
    if (fileIsDone) ++m_filesDone;
    if (Clock::now() < m_next) return;
    m_next = Clock::now() + std::chrono::milliseconds(100);
    StatusLine::show(lineOf(std::clamp(m_done / m_total, 0.0, 1.0), m_filesDone, m_files, StatusLine::columns()));
}

FileProgress::FileProgress(Progress& progress, std::uint64_t weight)
    : m_progress(progress), m_weight(static_cast<double>(weight)) {}

FileProgress::~FileProgress() {
    m_progress.add(m_weight - m_shown, true);
}

void FileProgress::expect(std::int64_t frames) {
    m_weightPerFrame = m_weight / std::max(static_cast<double>(frames), 1.0);
}

void FileProgress::add(std::int64_t frames) {
    const double added = std::min(m_weightPerFrame * static_cast<double>(frames), m_weight - m_shown);
    m_shown += added;
    m_progress.add(added, false);
}

} // namespace eq
