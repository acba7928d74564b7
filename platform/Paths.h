#pragma once

namespace eq {

/// The separator of folders in the system's paths.
#ifdef _WIN32
inline constexpr char pathSeparator = '\\';
#else
inline constexpr char pathSeparator = '/';
#endif

} // namespace eq
