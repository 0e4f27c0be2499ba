# Turns the game table (data/gba_games.tsv) into a C++ source that defines `gameDatabase`.
#
# usage: cmake -DINPUT=table.tsv -DOUTPUT=game_table.cpp -P GameTable.cmake
#
# Runs in script mode, so a cross build needs no second compiler. Stops without an output at the
# first value that the record in src/cart/game_database.h cannot hold. Rows count from 0, as in the
# array.
cmake_minimum_required(VERSION 3.20)
include("${CMAKE_CURRENT_LIST_DIR}/TableScript.cmake")

# The columns in the order of the record's fields, each with the bytes that its field holds beside
# the terminating zero.
set(columns title year publisher codes rom_size save_key)
set(longest_title 139)
set(longest_year 9)
set(longest_publisher 29)
set(longest_codes 39)
set(longest_rom_size 9)
set(longest_save_key 19)

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
    if(column STREQUAL "rom_size" AND NOT text MATCHES "^[1-9][0-9]*$")
        fail_at_row(${row} "rom_size is not a number of bytes: ${text}")
    endif()
endfunction()

# Adds the initializer of the row's record.
function(take_row row)
    set(literals "")
    foreach(column IN LISTS columns)
        check_value(${row} ${column} "${value_${column}}")
        quote("${value_${column}}" literal)
        string(APPEND literals "${literal}, ")
    endforeach()
    set_property(GLOBAL APPEND_STRING PROPERTY records "    {${literals}},\n")
endfunction()

read_rows(row_count)
get_property(records GLOBAL PROPERTY records)

file(WRITE "${OUTPUT}" "// Made from the game table; edit data/gba_games.tsv instead.
#include \"cart/game_database.h\"

static_assert(kGameCount == ${row_count}, \"kGameCount and the number of rows of the game table differ\");

const std::array<GbaGameRecord, kGameCount> gameDatabase = {{
${records}}};
")
