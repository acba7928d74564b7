# The toolchain for 64-bit Windows: Debian's mingw-w64 compilers (posix threads variant).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(EQ_MINGW x86_64-w64-mingw32)
include("${CMAKE_CURRENT_LIST_DIR}/mingw.cmake")
