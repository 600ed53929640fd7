# Cross build for 32-bit Windows with mingw-w64:
#   cmake -S . -B build-win32 -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-mingw-w64-i686.cmake
set(CMAKE_SYSTEM_PROCESSOR x86)
set(FF_MINGW_TRIPLET i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-mingw-w64-common.cmake)
