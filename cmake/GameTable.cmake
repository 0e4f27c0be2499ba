# Turns the game table (data/gba_games.tsv) into a C++ source that defines `gameDatabase`.
#
# usage: cmake -DINPUT=table.tsv -DOUTPUT=game_table.cpp -P GameTable.cmake
#
# Runs in script mode, so a cross build needs no second compiler. Stops without an output at the
# first value that the record in src/cart/game_database.h cannot hold. Rows count from 0, as in the
# array.
cmake_minimum_required(VERSION 3.20)

# The columns in the order of the record's fields, each with the bytes that its field holds beside
# the terminating zero.
set(columns title year publisher codes rom_size save_key)
set(longest_title 139)
set(longest_year 9)
set(longest_publisher 29)
set(longest_codes 39)
set(longest_rom_size 9)
set(longest_save_key 19)

string(ASCII 1 first_control)
string(ASCII 31 last_control)

function(fail_at_row row problem)
    math(EXPR line_number "${row} + 2")
    message(FATAL_ERROR "${INPUT}, row ${row} (line ${line_number}): ${problem}")
endfunction()

function(check_value row column text)
    # Counts bytes, not characters.
    string(LENGTH "${text}" bytes)
    if(bytes GREATER longest_${column})
        fail_at_row(${row}
            "${column} has ${bytes} bytes, its field holds ${longest_${column}}: ${text}")
    endif()
    if(bytes EQUAL 0 AND NOT column STREQUAL "save_key")
        fail_at_row(${row} "${column} is empty")
    endif()
    if(text MATCHES "[${first_control}-${last_control}]")
        fail_at_row(${row} "${column} holds a control character")
    endif()
    if(column STREQUAL "rom_size" AND NOT text MATCHES "^[1-9][0-9]*$")
        fail_at_row(${row} "rom_size is not a number of bytes: ${text}")
    endif()
endfunction()

# Sets `result` to a C++ literal of `text`. Two question marks might begin a trigraph, so each is
# escaped.
function(quote text result)
    string(REPLACE "\\" "\\\\" text "${text}")
    string(REPLACE "\"" "\\\"" text "${text}")
    string(REPLACE "?" "\\?" text "${text}")
    set(${result} "\"${text}\"" PARENT_SCOPE)
endfunction()

# Sets `result` to the initializer of the record that `line` describes.
function(make_record row line result)
    set(cell "([^\t]*)")
    if(NOT line MATCHES "^${cell}\t${cell}\t${cell}\t${cell}\t${cell}\t${cell}$")
        fail_at_row(${row} "not six values separated by tabs: ${line}")
    endif()
    set(literals "")
    set(index 1)
    foreach(column IN LISTS columns)
        check_value(${row} ${column} "${CMAKE_MATCH_${index}}")
        quote("${CMAKE_MATCH_${index}}" literal)
        string(APPEND literals "${literal}, ")
        math(EXPR index "${index} + 1")
    endforeach()
    set(${result} "    {${literals}},\n" PARENT_SCOPE)
endfunction()

# Splits the first line off `text`. No list of lines: a title may hold a semicolon or a bracket,
# which mean something in a list.
macro(take_line text result)
    string(FIND "${${text}}" "\n" line_end)
    if(line_end EQUAL -1)
        message(FATAL_ERROR "${INPUT}: the last line does not end in a line feed")
    endif()
    string(SUBSTRING "${${text}}" 0 ${line_end} ${result})
    math(EXPR line_end "${line_end} + 1")
    string(SUBSTRING "${${text}}" ${line_end} -1 ${text})
endmacro()

file(READ "${INPUT}" table)
take_line(table header)
string(REPLACE ";" "\t" expected_header "${columns}")
if(NOT header STREQUAL expected_header)
    message(FATAL_ERROR "${INPUT}: the header line does not name the columns ${columns}")
endif()

set(row 0)
set(records "")
while(NOT table STREQUAL "")
    take_line(table line)
    make_record(${row} "${line}" record)
    string(APPEND records "${record}")
    math(EXPR row "${row} + 1")
endwhile()

file(WRITE "${OUTPUT}" "// Made from the game table; edit data/gba_games.tsv instead.
#include \"cart/game_database.h\"

static_assert(kGameCount == ${row}, \"kGameCount and the number of rows of the game table differ\");

const std::array<GbaGameRecord, kGameCount> gameDatabase = {{
${records}}};
")
