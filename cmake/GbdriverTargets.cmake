# Compile settings that every target of this project shares.
add_library(gbdriver_options INTERFACE)
target_compile_features(gbdriver_options INTERFACE cxx_std_17)
target_include_directories(gbdriver_options INTERFACE "${PROJECT_SOURCE_DIR}/src")
target_compile_definitions(gbdriver_options INTERFACE QT_DISABLE_DEPRECATED_BEFORE=0x050700)
target_compile_options(gbdriver_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow)
# Sizes have 64 bits in Qt 6 and 32 in Qt 5, so what is right for one is a conversion for the other.
if(GBDRIVER_QT EQUAL 5)
    target_compile_options(gbdriver_options INTERFACE -Wconversion)
endif()
if(GBDRIVER_WARNINGS_AS_ERRORS)
    target_compile_options(gbdriver_options INTERFACE -Werror)
endif()
if(GBDRIVER_SANITIZE STREQUAL "thread")
    target_compile_options(gbdriver_options INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(gbdriver_options INTERFACE -fsanitize=thread)
elseif(GBDRIVER_SANITIZE)
    target_compile_options(gbdriver_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(gbdriver_options INTERFACE -fsanitize=address,undefined)
endif()

# gbdriver_library(NAME SOURCES... ): one static library per folder of src/. Those with a Q_OBJECT
# set AUTOMOC on it.
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

# Sets `result` to the name of the class in the source of a test: device_link_test has
# DeviceLinkTest.
function(gbdriver_test_class test result)
    string(REPLACE "_" ";" words "${test}")
    set(class "")
    foreach(word IN LISTS words)
        string(SUBSTRING "${word}" 0 1 first)
        string(SUBSTRING "${word}" 1 -1 rest)
        string(TOUPPER "${first}" first)
        string(APPEND class "${first}${rest}")
    endforeach()
    set(${result} "${class}" PARENT_SCOPE)
endfunction()

# gbdriver_test_program(NAME HEADERS kind TESTS test... [SOURCES file...] [LIBRARIES library...]):
# the program of a group of tests, each with a class of its own in a source named after it, compiled
# with precompiled headers of that kind. Registers nothing with ctest.
function(gbdriver_test_program name)
    cmake_parse_arguments(arg "" "HEADERS" "TESTS;SOURCES;LIBRARIES" ${ARGN})
    set(sources "${arg_TESTS}")
    list(TRANSFORM sources APPEND ".cpp")
    add_executable(${name} ${sources} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE
        gbdriver_options gbdriver_test_runner Qt::Test ${arg_LIBRARIES})
    set_target_properties(${name} PROPERTIES
        AUTOMOC ON
        RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    gbdriver_precompile(${arg_HEADERS} ${name})
endfunction()

# gbdriver_any_qt(TEST...): these tests end the same with any Qt, as far as the others do. They run
# with Qt 5 only, unless all tests are asked for.
function(gbdriver_any_qt)
    foreach(test IN LISTS ARGN)
        set_property(TEST ${test} APPEND PROPERTY LABELS any-qt)
    endforeach()
endfunction()

# gbdriver_test_group(NAME TESTS test... [SOURCES file...] [LIBRARIES library...]
#                     [PREFIX text] [LABELS label...] [TIMEOUT seconds]):
# compiles several Qt Test classes into one program, and registers each as a test of its own, named
# PREFIX and its source, which runs the program for this one class.
function(gbdriver_test_group name)
    cmake_parse_arguments(arg "" "PREFIX;TIMEOUT" "TESTS;SOURCES;LIBRARIES;LABELS" ${ARGN})
    gbdriver_test_program(${name} HEADERS test
        TESTS ${arg_TESTS} SOURCES ${arg_SOURCES} LIBRARIES ${arg_LIBRARIES})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    foreach(test IN LISTS arg_TESTS)
        gbdriver_test_class(${test} class)
        add_test(NAME ${arg_PREFIX}${test} COMMAND ${name} ${class})
        set_tests_properties(${arg_PREFIX}${test} PROPERTIES
            TIMEOUT ${arg_TIMEOUT}
            LABELS "${arg_LABELS}"
            ENVIRONMENT "${GBDRIVER_TEST_ENVIRONMENT}")
    endforeach()
endfunction()
