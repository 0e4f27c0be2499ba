# gbdriver_window_tests(NAME TESTS test... [UNDRAWN test...] [SOURCES file...] [LIBRARIES
# library...]): the tests of the program's window, in one program. Each runs on the offscreen platform, and once more where the
# window is really drawn: as TEST_x11 on an X server of its own, or on Windows as TEST_desktop on
# the desktop that is there. The window looks for mapper scripts and translations in the folder of
# its program, so each test runs the program from a folder of its own, into which it is linked. Those
# that are UNDRAWN as well look at no widget, and run once.
set(GBDRIVER_WINDOW_TEST_FOLDER "${CMAKE_CURRENT_LIST_DIR}")
function(gbdriver_window_tests name)
    cmake_parse_arguments(arg "" "" "TESTS;UNDRAWN;SOURCES;LIBRARIES" ${ARGN})
    gbdriver_test_program(${name} HEADERS window_test
        TESTS ${arg_TESTS}
        SOURCES ${arg_SOURCES} "${GBDRIVER_WINDOW_TEST_FOLDER}/known_leaks.cpp"
        LIBRARIES ${arg_LIBRARIES})
    if(NOT WIN32)
        add_dependencies(${name} xvfb_run)
    endif()
    foreach(test IN LISTS arg_TESTS)
        set(folder "${CMAKE_BINARY_DIR}/tests/${test}.d")
        set(program "${folder}/$<TARGET_FILE_NAME:${name}>")
        add_custom_command(TARGET ${name} POST_BUILD
            COMMAND "${CMAKE_COMMAND}" -E make_directory "${folder}"
            COMMAND "${CMAKE_COMMAND}" -E create_hardlink "$<TARGET_FILE:${name}>" "${program}"
            VERBATIM)
        gbdriver_add_offscreen_test(${test} "${folder}" "${program}")
        if(NOT test IN_LIST arg_UNDRAWN)
            gbdriver_add_drawn_test(${test} "${folder}" "${program}")
        endif()
    endforeach()
endfunction()

function(gbdriver_add_offscreen_test test folder program)
    gbdriver_test_class(${test} class)
    # File dialogs store what they looked like; not among the settings of whoever runs the tests.
    set(environment "LC_ALL=C.UTF-8;XDG_CONFIG_HOME=${folder}/config")
    # Only the name of a target would bring the emulator of a cross build along.
    add_test(NAME ${test} COMMAND ${CMAKE_CROSSCOMPILING_EMULATOR} "${program}" ${class})
    set_tests_properties(${test} PROPERTIES
        RESOURCE_LOCK ${test}
        TIMEOUT 120
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;${environment}")
endfunction()

function(gbdriver_add_drawn_test test folder program)
    gbdriver_test_class(${test} class)
    set(environment "LC_ALL=C.UTF-8;XDG_CONFIG_HOME=${folder}/config")
    if(WIN32)
        # The tests answer file dialogs of Qt; the system's own are left to the test of the package.
        # One desktop has one keyboard focus.
        set(drawn ${test}_desktop)
        add_test(NAME ${drawn} COMMAND ${CMAKE_CROSSCOMPILING_EMULATOR} "${program}" ${class})
        set_tests_properties(${drawn} PROPERTIES
            LABELS desktop
            RESOURCE_LOCK "${test};desktop"
            ENVIRONMENT "QT_QPA_PLATFORM=windows:dialogs=none;${environment}")
    else()
        set(drawn ${test}_x11)
        add_test(NAME ${drawn} COMMAND xvfb_run "${program}" ${class})
        set_tests_properties(${drawn} PROPERTIES
            RESOURCE_LOCK ${test}
            ENVIRONMENT "${environment}")
    endif()
    set_tests_properties(${drawn} PROPERTIES TIMEOUT 120)
endfunction()
