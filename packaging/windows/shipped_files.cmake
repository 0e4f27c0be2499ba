# Everything that the package holds beside the programs and their scripts: libraries, licences, the
# short manual. Included by a cross build.

set(program_folder "${CMAKE_INSTALL_LIBDIR}/gbdriver")
get_filename_component(qt_folder "${Qt5_DIR}/../../.." ABSOLUTE)
get_filename_component(squirrel_folder "${SQUIRREL_INCLUDE_DIR}/.." ABSOLUTE)

# Stops where a file of the package is missing.
function(install_existing destination)
    foreach(file IN LISTS ARGN)
        if(NOT EXISTS "${file}")
            message(FATAL_ERROR "The package needs ${file}, which is not there")
        endif()
    endforeach()
    install(FILES ${ARGN} DESTINATION "${destination}")
endfunction()

function(find_runtime result name)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=${name}"
        OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE)
    get_filename_component(file "${file}" REALPATH)
    set(${result} "${file}" PARENT_SCOPE)
endfunction()

foreach(name libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll)
    find_runtime(library ${name})
    install_existing("${program_folder}" "${library}")
endforeach()
foreach(module Core Gui Widgets)
    install_existing("${program_folder}" "${qt_folder}/bin/Qt5${module}.dll")
endforeach()
install_existing("${program_folder}/platforms" "${qt_folder}/plugins/platforms/qwindows.dll")

set(licences "${program_folder}/licences")
install_existing("${licences}" "${PROJECT_SOURCE_DIR}/LICENSE")
file(GLOB qt_licences "${qt_folder}/licences/*")
install_existing("${licences}/qt" ${qt_licences})
install(FILES "${qt_folder}/SOURCE" DESTINATION "${licences}/qt" RENAME SOURCE.txt)
install(FILES "${squirrel_folder}/COPYRIGHT" DESTINATION "${licences}" RENAME squirrel.txt)
install(FILES /usr/share/doc/gcc-mingw-w64-base/copyright
    DESTINATION "${licences}" RENAME gcc-runtime.txt)
install(FILES /usr/share/doc/mingw-w64-common/copyright
    DESTINATION "${licences}" RENAME mingw-w64-runtime.txt)
# Of the code that unpacks, in the installer and in the uninstaller that it leaves.
install(FILES /usr/share/doc/nsis/copyright DESTINATION "${licences}" RENAME installer.txt)

file(STRINGS "${qt_folder}/SOURCE" qt_source LIMIT_COUNT 1)
string(REGEX REPLACE " .*" "" qt_source "${qt_source}")
# Notepad of older Windows shows one long line where the line ends are those of Linux.
configure_file("${CMAKE_CURRENT_SOURCE_DIR}/README.txt.in" "${CMAKE_CURRENT_BINARY_DIR}/README.txt"
    @ONLY NEWLINE_STYLE DOS)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/README.txt" DESTINATION "${program_folder}")
