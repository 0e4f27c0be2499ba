# Links every program with qt_order.cpp, through gbdriver_options: the calls that are listed there
# reach it first.
file(STRINGS "${CMAKE_CURRENT_LIST_DIR}/qt_order.cpp" wrapped REGEX "__real__ZN")
list(TRANSFORM wrapped REPLACE ".*__real_(_ZN[A-Za-z0-9_]+)\\(?.*" "-Wl,--wrap=\\1")
list(REMOVE_DUPLICATES wrapped)

add_library(gbdriver_qt_order STATIC "${CMAKE_CURRENT_LIST_DIR}/qt_order.cpp")
target_link_libraries(gbdriver_qt_order PRIVATE Qt::Core)
target_compile_options(gbdriver_qt_order PRIVATE -fsanitize=thread)
target_link_options(gbdriver_options INTERFACE ${wrapped})
target_link_libraries(gbdriver_options INTERFACE gbdriver_qt_order)
