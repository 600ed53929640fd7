# Cross build for 64-bit Windows with mingw-w64:
#   cmake -S . -B build-win64 -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-mingw-w64-x86_64.cmake
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(FF_MINGW_TRIPLET x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-mingw-w64-common.cmake)
