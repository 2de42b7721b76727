# Cross-build for 32-bit Windows with Debian's mingw-w64:
#   cmake -S . -B build-win32 -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-mingw-i686.cmake
# The posix thread model gives the C++ runtime std::mutex and std::thread; the
# runtime is linked statically, so the DLLs need only Windows's own DLLs.
# Doubles are computed in SSE2 registers (see i686-maths.cmake).
# Test programs can run only where a 32-bit Wine (Debian's wine32) is installed.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
include("${CMAKE_CURRENT_LIST_DIR}/i686-maths.cmake")
set(CMAKE_C_FLAGS_INIT "${KALVOR_I686_FLAGS}")
set(CMAKE_CXX_FLAGS_INIT "${KALVOR_I686_FLAGS}")
set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
if(EXISTS /usr/lib/wine/wine)
  set(CMAKE_CROSSCOMPILING_EMULATOR
    "${CMAKE_CURRENT_LIST_DIR}/../tests/windows/wine-run.sh;/usr/lib/wine/wine;${CMAKE_BINARY_DIR}/wine-prefix")
endif()
