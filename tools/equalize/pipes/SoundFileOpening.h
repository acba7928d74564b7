#pragma once

#include <mutex>

namespace eq {

/// Returns the lock that a thread holds while it opens a sound file. libsndfile keeps the error of a failed opening in
/// one place for the whole process, so only one thread may open a file at a time.
[[nodiscard]] inline std::unique_lock<std::mutex> lockSoundFileOpening() {
    static std::mutex opening;
    return std::unique_lock(opening);
}

} // namespace eq
