# Toolchain: 64-bit Windows programs with mingw-w64 and posix threads, from Linux.
#
# Libraries come from the caches that the scripts in tools/windows fill. What CMake and ctest run of
# the result runs under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The plain name of the compiler may stand for the one with Windows' own threads, which lacks
# std::thread.
set(mingw_target x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${mingw_target}-gcc-posix)
set(CMAKE_CXX_COMPILER ${mingw_target}-g++-posix)
set(CMAKE_RC_COMPILER ${mingw_target}-windres)

set(mingw_cache "$ENV{XDG_CACHE_HOME}")
if(NOT mingw_cache)
    set(mingw_cache "$ENV{HOME}/.cache")
endif()
string(APPEND mingw_cache "/gbdriver")

# The links that the scripts renew; CMake compares real paths.
set(CMAKE_FIND_ROOT_PATH "/usr/${mingw_target}")
foreach(library qt-mingw squirrel-${mingw_target} openssl-mingw)
    file(REAL_PATH "${mingw_cache}/${library}" folder)
    list(PREPEND CMAKE_FIND_ROOT_PATH "${folder}")
endforeach()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../tools/windows/wine.sh")
