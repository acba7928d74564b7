#pragma once

#include <mutex>

namespace eq {

/// libsndfile's error of a failed opening is one for the whole process, so one thread opens a file at a time.
[[nodiscard]] inline std::unique_lock<std::mutex> lockSoundFileOpening() {
    static std::mutex opening;
    return std::unique_lock(opening);
}

} // namespace eq
