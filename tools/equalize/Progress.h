#pragma once

#include <chrono>
#include <cstdint>

namespace eq {

/// A bar on standard error, if that is a terminal. It is gone when the object goes.
class Progress {
public:
    /// `total` is the amount at which the bar is full.
    Progress(std::int64_t total, bool wanted);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void show(std::int64_t done);

private:
    using Clock = std::chrono::steady_clock;

    std::int64_t m_total;
    bool m_isShown;
    Clock::time_point m_next;
};

} // namespace eq
