# gbdriver_window_test(NAME, as gbdriver_test): a test of the program's window. It runs on the
# offscreen platform, and once more where the window is really drawn: as NAME_x11 on an X server of
# its own, or on Windows as NAME_desktop on the desktop that is there. The program looks for mapper
# scripts and translations in its own folder, so each of these tests has a folder to itself.
set(GBDRIVER_WINDOW_TEST_FOLDER "${CMAKE_CURRENT_LIST_DIR}")
function(gbdriver_window_test name)
    gbdriver_test(${name} ${ARGN})
    target_sources(${name} PRIVATE "${GBDRIVER_WINDOW_TEST_FOLDER}/known_leaks.cpp")
    set(folder "${CMAKE_BINARY_DIR}/tests/${name}.d")
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${folder}")
    get_test_property(${name} TIMEOUT timeout)
    # File dialogs store what they looked like; not among the settings of whoever runs the tests.
    set(environment "LC_ALL=C.UTF-8;XDG_CONFIG_HOME=${folder}/config")
    set_tests_properties(${name} PROPERTIES
        RESOURCE_LOCK ${name}
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;${environment}")
    if(WIN32)
        # The tests answer file dialogs of Qt; the system's own are left to the test of the package.
        # One desktop has one keyboard focus.
        set(drawn ${name}_desktop)
        add_test(NAME ${drawn} COMMAND ${name})
        set_tests_properties(${drawn} PROPERTIES
            LABELS desktop
            RESOURCE_LOCK "${name};desktop"
            ENVIRONMENT "QT_QPA_PLATFORM=windows:dialogs=none;${environment}")
    else()
        set(drawn ${name}_x11)
        add_test(NAME ${drawn} COMMAND xvfb_run $<TARGET_FILE:${name}>)
        set_tests_properties(${drawn} PROPERTIES
            RESOURCE_LOCK ${name}
            ENVIRONMENT "${environment}")
    endif()
    set_tests_properties(${drawn} PROPERTIES TIMEOUT ${timeout})
endfunction()
