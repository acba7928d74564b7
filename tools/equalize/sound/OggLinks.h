#pragma once

#include <string>

namespace eq {

/// Returns nothing for an Ogg file that is one stream, or else the reason why it cannot be read to its end: several
/// streams one after the other, of which libsndfile reads the first, or a page that is cut off. Empty for what is no
/// regular file.
[[nodiscard]] std::string faultOfOgg(const std::string& file);

} // namespace eq
