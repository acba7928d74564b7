#pragma once

#include <string>

#include <sndfile.h>

namespace eq {

/// Each function returns the reason why a file of the format cannot be complete, or an empty text: the first for a
/// number of frames to come, the second for the size of the written file in bytes.
[[nodiscard]] std::string faultOfLength(const SF_INFO& output, sf_count_t frames);
[[nodiscard]] std::string faultOfSize(const SF_INFO& output, sf_count_t bytes);

} // namespace eq
