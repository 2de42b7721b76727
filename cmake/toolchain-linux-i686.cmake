# 32-bit Linux build with Debian's gcc-multilib and g++-multilib:
#   cmake -S . -B build-m32 -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-linux-i686.cmake
# It checks on Linux what the i686 DLL meets on Windows: 4-byte pointers,
# the records' layout and the same double arithmetic (the same flags as the
# i686 DLL). GoogleTest is built from Debian's sources (package googletest),
# as in the Windows builds; the test programs run directly.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)
include("${CMAKE_CURRENT_LIST_DIR}/i686-maths.cmake")
set(CMAKE_C_FLAGS_INIT "-m32 ${KALVOR_I686_FLAGS}")
set(CMAKE_CXX_FLAGS_INIT "-m32 ${KALVOR_I686_FLAGS}")
set(CMAKE_EXE_LINKER_FLAGS_INIT -m32)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -m32)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -m32)
# Only 32-bit libraries may be found: the 64-bit ones of the machine (Cairo,
# CivetWeb) cannot be linked, and the parts that need them are left out.
set(CMAKE_LIBRARY_ARCHITECTURE i386-linux-gnu)
set(CMAKE_IGNORE_PATH /usr/lib/x86_64-linux-gnu /lib/x86_64-linux-gnu)
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/i386-linux-gnu/pkgconfig:/usr/share/pkgconfig)
