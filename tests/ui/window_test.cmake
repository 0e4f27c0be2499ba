# gbdriver_window_test(NAME, as gbdriver_test): a test of the program's window. It runs on the
# offscreen platform, and as NAME_x11 once more on an X server of its own. The program looks for
# mapper scripts and translations in its own folder, so each of these tests has a folder to itself.
set(GBDRIVER_WINDOW_TEST_FOLDER "${CMAKE_CURRENT_LIST_DIR}")
function(gbdriver_window_test name)
    gbdriver_test(${name} ${ARGN})
    target_sources(${name} PRIVATE "${GBDRIVER_WINDOW_TEST_FOLDER}/known_leaks.cpp")
    set(folder "${CMAKE_BINARY_DIR}/tests/${name}.d")
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${folder}")
    get_test_property(${name} TIMEOUT timeout)
    add_test(NAME ${name}_x11 COMMAND xvfb_run $<TARGET_FILE:${name}>)
    set_tests_properties(${name} ${name}_x11 PROPERTIES
        RESOURCE_LOCK ${name}
        TIMEOUT ${timeout})
    # File dialogs store what they looked like; not among the settings of whoever runs the tests.
    set_tests_properties(${name} PROPERTIES ENVIRONMENT
        "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;XDG_CONFIG_HOME=${folder}/config")
    set_tests_properties(${name}_x11 PROPERTIES ENVIRONMENT
        "LC_ALL=C.UTF-8;XDG_CONFIG_HOME=${folder}/config")
endfunction()
