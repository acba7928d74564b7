# The toolchain for 32-bit Windows: Debian's mingw-w64 compilers (posix threads variant).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(EQ_MINGW i686-w64-mingw32)
include("${CMAKE_CURRENT_LIST_DIR}/mingw.cmake")
