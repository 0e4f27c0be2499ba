# Qt 5.15 or Qt 6: the same sources build with both. The targets have no version in their names.
set(GBDRIVER_QT 5 CACHE STRING "Major version of Qt, 5 or 6")
set_property(CACHE GBDRIVER_QT PROPERTY STRINGS 5 6)
if(GBDRIVER_QT EQUAL 5)
    set(GBDRIVER_QT_VERSION 5.15)
else()
    set(GBDRIVER_QT_VERSION 6.4)
endif()

# gbdriver_find_qt(MODULE...): makes the targets Qt::MODULE, or ends the configuration.
macro(gbdriver_find_qt)
    find_package(Qt${GBDRIVER_QT} ${GBDRIVER_QT_VERSION} REQUIRED COMPONENTS ${ARGN})
endmacro()

# Text codecs moved out of Qt's core.
set(GBDRIVER_QT_CODECS Qt5::Core)
if(GBDRIVER_QT EQUAL 6)
    gbdriver_find_qt(Core5Compat)
    set(GBDRIVER_QT_CODECS Qt6::Core5Compat)
    # The macro that it defines would be one that targets with the same precompiled headers lack.
    set_target_properties(Qt6::Core5Compat PROPERTIES INTERFACE_COMPILE_DEFINITIONS "")
endif()
