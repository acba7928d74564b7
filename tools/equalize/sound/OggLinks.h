#pragma once

#include <string>

namespace eq {

/// Returns the reason why an Ogg file cannot be read to its end, or an empty text. The reason is a second stream after
/// the first one, which libsndfile does not read, or a page that is cut off. Returns an empty text if the path does not
/// name a regular file.
[[nodiscard]] std::string faultOfOgg(const std::string& file);

} // namespace eq
