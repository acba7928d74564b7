#pragma once

namespace eq {

/// What parts the folders of a path from the file functions.
#ifdef _WIN32
inline constexpr char pathSeparator = '\\';
#else
inline constexpr char pathSeparator = '/';
#endif

} // namespace eq
