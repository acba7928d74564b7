#pragma once

#include <string>

#include <sndfile.h>

namespace eq {

/// Returns the reason why a file of the format `output` cannot hold a sound of `frames` frames, or an empty text.
[[nodiscard]] std::string faultOfLength(const SF_INFO& output, sf_count_t frames);
/// Returns the reason why a file of the format `output` cannot have a size of `bytes` bytes, or an empty text.
[[nodiscard]] std::string faultOfSize(const SF_INFO& output, sf_count_t bytes);

} // namespace eq
