# Compile settings that every target of this project shares.
add_library(gbdriver_options INTERFACE)
target_compile_features(gbdriver_options INTERFACE cxx_std_17)
target_include_directories(gbdriver_options INTERFACE "${PROJECT_SOURCE_DIR}/src")
target_compile_definitions(gbdriver_options INTERFACE QT_DISABLE_DEPRECATED_BEFORE=0x050700)
target_compile_options(gbdriver_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(GBDRIVER_WARNINGS_AS_ERRORS)
    target_compile_options(gbdriver_options INTERFACE -Werror)
endif()
if(GBDRIVER_SANITIZE)
    target_compile_options(gbdriver_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(gbdriver_options INTERFACE -fsanitize=address,undefined)
endif()

# gbdriver_library(NAME SOURCES... ): one static library per folder of src/.
function(gbdriver_library name)
    add_library(${name} STATIC ${ARGN})
    target_link_libraries(${name} PUBLIC gbdriver_options)
endfunction()

# What every test program runs with. Leaks of the system's libraries are listed in lsan.supp.
# Windows are drawn without OpenGL, whose drivers leak in ways that no suppression can name: they
# are unloaded before leaks are looked for.
set(GBDRIVER_TEST_ENVIRONMENT
    QT_QPA_PLATFORM=offscreen
    QT_XCB_GL_INTEGRATION=none
    LC_ALL=C.UTF-8
    ASAN_OPTIONS=detect_stack_use_after_return=1
    LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0
    UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1)

# gbdriver_test(NAME SOURCES file... [LIBRARIES library...] [LABELS label...] [TIMEOUT seconds]):
# registers one Qt Test program. Widget tests run on the offscreen platform unless the test itself
# starts an X server and asks for another.
function(gbdriver_test name)
    cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LIBRARIES;LABELS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE gbdriver_options Qt5::Test ${arg_LIBRARIES})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    add_test(NAME ${name} COMMAND ${name})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${arg_TIMEOUT}
        LABELS "${arg_LABELS}"
        ENVIRONMENT "${GBDRIVER_TEST_ENVIRONMENT}")
endfunction()
