# What the scripts share that turn a table (data/*.tsv) into C++: reading the rows, refusing the
# first one that is wrong, and quoting.
#
# A script names the columns in `columns`, defines take_row(row) and calls read_rows(). take_row()
# finds the values of its row in value_<column>, and keeps what it makes of them in global
# properties. Rows count from 0.

string(ASCII 1 first_control)
string(ASCII 31 last_control)

function(fail_at_row row problem)
    math(EXPR line_number "${row} + 2")
    message(FATAL_ERROR "${INPUT}, row ${row} (line ${line_number}): ${problem}")
endfunction()

# Sets `result` to a C++ literal of `text`. Two question marks might begin a trigraph, so each is
# escaped.
function(quote text result)
    string(REPLACE "\\" "\\\\" text "${text}")
    string(REPLACE "\"" "\\\"" text "${text}")
    string(REPLACE "?" "\\?" text "${text}")
    set(${result} "\"${text}\"" PARENT_SCOPE)
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

# Sets value_<column> for every column.
function(split_line row line)
    list(LENGTH columns column_count)
    string(REPEAT "\t([^\t]*)" ${column_count} cells)
    if(NOT "\t${line}" MATCHES "^${cells}$")
        fail_at_row(${row} "not ${column_count} values separated by tabs: ${line}")
    endif()
    # A line feed ends the line and a tab the value; a text needs no other control character.
    string(REPLACE "\t" "" text "${line}")
    set(cell 1)
    foreach(column IN LISTS columns)
        set(value_${column} "${CMAKE_MATCH_${cell}}" PARENT_SCOPE)
        math(EXPR cell "${cell} + 1")
    endforeach()
    if(text MATCHES "[${first_control}-${last_control}]")
        fail_at_row(${row} "holds a control character: ${line}")
    endif()
endfunction()

# Passes every row of INPUT to take_row() and sets `row_count`.
function(read_rows row_count)
    file(READ "${INPUT}" table)
    take_line(table header)
    string(REPLACE ";" "\t" expected_header "${columns}")
    if(NOT header STREQUAL expected_header)
        message(FATAL_ERROR "${INPUT}: the header line does not name the columns ${columns}")
    endif()
    set(row 0)
    while(NOT table STREQUAL "")
        take_line(table line)
        split_line(${row} "${line}")
        take_row(${row})
        math(EXPR row "${row} + 1")
    endwhile()
    set(${row_count} ${row} PARENT_SCOPE)
endfunction()
