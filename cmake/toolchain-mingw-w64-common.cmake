# Shared part of the mingw-w64 cross toolchains; the including file sets
# FF_MINGW_TRIPLET (x86_64-w64-mingw32 or i686-w64-mingw32) first.
#
# The DLL and every executable link libgcc, libstdc++ and winpthread statically, so
# that they load on a bare Windows (or Wine) with only the system DLLs beside them:
# no WINEPATH and no copying of the compiler's runtime DLLs is needed.
set(CMAKE_SYSTEM_NAME Windows)

# Prefer the posix thread model (full <thread>/<mutex>); fall back to whatever the
# unsuffixed driver is on this machine.
find_program(FF_MINGW_CXX NAMES ${FF_MINGW_TRIPLET}-g++-posix ${FF_MINGW_TRIPLET}-g++ REQUIRED)
find_program(FF_MINGW_CC NAMES ${FF_MINGW_TRIPLET}-gcc-posix ${FF_MINGW_TRIPLET}-gcc REQUIRED)
set(CMAKE_CXX_COMPILER ${FF_MINGW_CXX})
set(CMAKE_C_COMPILER ${FF_MINGW_CC})
set(CMAKE_RC_COMPILER ${FF_MINGW_TRIPLET}-windres)
set(CMAKE_OBJDUMP ${FF_MINGW_TRIPLET}-objdump CACHE FILEPATH "objdump of the cross toolchain")

set(CMAKE_FIND_ROOT_PATH /usr/${FF_MINGW_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")

# ctest runs the cross-built test programs under Wine, in a prefix inside the build
# folder (created on first use) unless WINEPREFIX names another one.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine-run.sh ${CMAKE_BINARY_DIR}/wineprefix)
