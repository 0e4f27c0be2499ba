# gbdriver_drive_test(NAME): makes a test one of those that have the drives D to H to themselves.
# tools/windows/test.sh prepares these, see drive_folders.h.
function(gbdriver_drive_test name)
    set_tests_properties(${name} PROPERTIES LABELS drives RESOURCE_LOCK drives)
endfunction()
