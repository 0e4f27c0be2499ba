# Finds Squirrel 3 and its standard library: the distribution's package, or the static build that
# tools/squirrel.sh keeps in the user's cache.
#
# Targets:  Squirrel::Squirrel  Squirrel::Sqstdlib
# Settings: SQUIRREL_ROOT         looked at before anything else; holds include/ and lib/
#           SQUIRREL_DEFINITIONS  what the library was compiled with and its headers do not record
#
# Configuration fails where headers and library disagree on the width of SQInteger, because the
# program would still link and then corrupt memory.

if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(squirrel_width _SQ64)
endif()
set(SQUIRREL_ROOT "" CACHE PATH "Folder with include/ and lib/ of Squirrel")
set(SQUIRREL_DEFINITIONS "${squirrel_width}" CACHE STRING "Definitions that Squirrel was built with")

set(squirrel_cache "$ENV{XDG_CACHE_HOME}")
if(NOT squirrel_cache)
    set(squirrel_cache "$ENV{HOME}/.cache")
endif()
set(squirrel_cache "${squirrel_cache}/gbdriver/squirrel-${CMAKE_LIBRARY_ARCHITECTURE}")

find_path(SQUIRREL_INCLUDE_DIR squirrel.h
    HINTS "${SQUIRREL_ROOT}"
    PATHS "${squirrel_cache}"
    PATH_SUFFIXES include include/squirrel3 include/squirrel squirrel3 squirrel)
find_library(SQUIRREL_LIBRARY
    NAMES squirrel3 squirrel squirrel_static
    HINTS "${SQUIRREL_ROOT}"
    PATHS "${squirrel_cache}"
    PATH_SUFFIXES lib)
find_library(SQSTDLIB_LIBRARY
    NAMES sqstdlib3 sqstdlib sqstdlib_static
    HINTS "${SQUIRREL_ROOT}"
    PATHS "${squirrel_cache}"
    PATH_SUFFIXES lib)
mark_as_advanced(SQUIRREL_INCLUDE_DIR SQUIRREL_LIBRARY SQSTDLIB_LIBRARY)

if(SQUIRREL_INCLUDE_DIR)
    file(STRINGS "${SQUIRREL_INCLUDE_DIR}/squirrel.h" Squirrel_VERSION
        REGEX "define[ \t]+SQUIRREL_VERSION_NUMBER[ \t]+[0-9]+")
    # 310 stands for 3.1.0, 223 for 2.2.3.
    string(REGEX REPLACE ".*[ \t]([0-9])([0-9])([0-9]).*" "\\1.\\2.\\3"
        Squirrel_VERSION "${Squirrel_VERSION}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Squirrel
    REQUIRED_VARS SQUIRREL_LIBRARY SQSTDLIB_LIBRARY SQUIRREL_INCLUDE_DIR
    VERSION_VAR Squirrel_VERSION
    REASON_FAILURE_MESSAGE
        "Install libsquirrel-dev, or run tools/setup.sh, or set SQUIRREL_ROOT.")

# Builds the width check and, where this machine can execute the result, runs it.
function(check_squirrel_width)
    set(settings "${SQUIRREL_LIBRARY};${SQUIRREL_INCLUDE_DIR};${SQUIRREL_DEFINITIONS}")
    if("${SQUIRREL_WIDTH_CHECKED}" STREQUAL "${settings}")
        return()
    endif()
    set(arguments
        "${CMAKE_BINARY_DIR}/squirrel_width_check"
        "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/squirrel_width_check.cpp"
        CMAKE_FLAGS "-DINCLUDE_DIRECTORIES=${SQUIRREL_INCLUDE_DIR}"
        LINK_LIBRARIES "${SQUIRREL_LIBRARY}")
    set(definitions "${SQUIRREL_DEFINITIONS}")
    list(TRANSFORM definitions PREPEND "-D")

    unset(squirrel_runs CACHE)
    unset(squirrel_builds CACHE)
    if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
        try_compile(squirrel_builds ${arguments}
            COMPILE_DEFINITIONS ${definitions} OUTPUT_VARIABLE output)
        set(squirrel_runs 0)
    else()
        try_run(squirrel_runs squirrel_builds ${arguments}
            COMPILE_DEFINITIONS ${definitions}
            COMPILE_OUTPUT_VARIABLE output RUN_OUTPUT_VARIABLE printed)
    endif()
    if(NOT squirrel_builds)
        message(FATAL_ERROR "A program with Squirrel does not build:\n${output}")
    endif()
    if(NOT squirrel_runs EQUAL 0)
        string(STRIP "${printed}" printed)
        message(FATAL_ERROR
            "The headers and the library of Squirrel disagree on the width of SQInteger: ${printed} "
            "(${SQUIRREL_LIBRARY} used with SQUIRREL_DEFINITIONS=\"${SQUIRREL_DEFINITIONS}\"). "
            "Set SQUIRREL_DEFINITIONS to what the library was built with.")
    endif()
    set(SQUIRREL_WIDTH_CHECKED "${settings}" CACHE INTERNAL "What the width check passed with")
endfunction()

if(Squirrel_FOUND AND NOT TARGET Squirrel::Squirrel)
    check_squirrel_width()

    add_library(Squirrel::Squirrel UNKNOWN IMPORTED)
    set_target_properties(Squirrel::Squirrel PROPERTIES
        IMPORTED_LOCATION "${SQUIRREL_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${SQUIRREL_INCLUDE_DIR}"
        INTERFACE_COMPILE_DEFINITIONS "${SQUIRREL_DEFINITIONS}")

    add_library(Squirrel::Sqstdlib UNKNOWN IMPORTED)
    set_target_properties(Squirrel::Sqstdlib PROPERTIES
        IMPORTED_LOCATION "${SQSTDLIB_LIBRARY}"
        INTERFACE_LINK_LIBRARIES Squirrel::Squirrel)
endif()
