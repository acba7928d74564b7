#include "tools/equalize/Progress.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include <unistd.h>

namespace eq {

Progress::Progress(std::int64_t total, bool wanted)
    : m_total(std::max<std::int64_t>(total, 1)),
      m_isShown(wanted && isatty(STDERR_FILENO) == 1),
      m_next(Clock::now()) {}

Progress::~Progress() {
    // Back to the start of the line, and the line erased.
    if (m_isShown) std::fputs("\r\x1B[K", stderr);
}

void Progress::show(std::int64_t done) {
    if (!m_isShown || Clock::now() < m_next) return;
    m_next = Clock::now() + std::chrono::milliseconds(100);
    constexpr int Width = 40;
    const double share = std::min(1.0, static_cast<double>(done) / static_cast<double>(m_total));
    const int filled = static_cast<int>(share * Width);
    const std::string bar =
        std::string(static_cast<std::size_t>(filled), '#') + std::string(static_cast<std::size_t>(Width - filled), '.');
    std::fprintf(stderr, "\r[%s] %3d %%", bar.c_str(), static_cast<int>(share * 100.0));
    std::fflush(stderr);
}

} // namespace eq
