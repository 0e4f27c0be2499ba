# Turns the table of known dumps (data/known_dumps.tsv) into a C++ source that defines the arrays of
# src/cart/known_dump_table.h.
#
# usage: cmake -DINPUT=table.tsv -DOUTPUT=known_dump_table.cpp -P KnownDumps.cmake
#
# Runs in script mode, so a cross build needs no second compiler. Stops without an output at the
# first value that is none of its column. Rows count from 0.
cmake_minimum_required(VERSION 3.20)
include("${CMAKE_CURRENT_LIST_DIR}/TableScript.cmake")

# The columns, each with what a value looks like. A size of nine digits fits its field.
string(REPEAT "[0-9]?" 8 digits)
string(REPEAT "[0-9a-f]" 8 crc32_digits)
string(REPEAT "[0-9a-f]" 40 sha1_digits)
set(columns system title size crc32 sha1)
set(form_system "^(GB|GBC|GBA)$")
set(form_title ".")
set(form_size "^[1-9]${digits}$")
set(form_crc32 "^${crc32_digits}$")
set(form_sha1 "^${sha1_digits}$")

# In the order of kKnownDumpSystems.
set(systems GB GBC GBA)

# Rows get keys of one length, so that their order as text is their order as numbers.
set(first_key 100000)

set_property(GLOBAL PROPERTY title_bytes 0)

# Adds the row's title to the titles and keeps the rest of its record under its key.
function(take_row row)
    foreach(column IN LISTS columns)
        if(NOT value_${column} MATCHES "${form_${column}}")
            fail_at_row(${row} "not a ${column}: ${value_${column}}")
        endif()
    endforeach()

    get_property(title_offset GLOBAL PROPERTY title_bytes)
    quote("${value_title}\n" literal)
    string(REPLACE "\n" "\\0" literal "${literal}")
    set_property(GLOBAL APPEND_STRING PROPERTY titles "    ${literal}\n")
    string(LENGTH "${value_title}" title_length)
    math(EXPR next_title "${title_offset} + ${title_length} + 1")
    set_property(GLOBAL PROPERTY title_bytes ${next_title})

    math(EXPR key "${first_key} + ${row}")
    set_property(GLOBAL APPEND PROPERTY keys "${value_sha1}${key}")
    list(FIND systems ${value_system} system)
    string(REGEX REPLACE "(..)" "0x\\1, " sha1_bytes "${value_sha1}")
    set_property(GLOBAL PROPERTY image_${key}
        "{${sha1_bytes}}, 0x${value_crc32}, ${value_size}, ${system}")
    set_property(GLOBAL PROPERTY title_offset_${key} ${title_offset})
endfunction()

# Adds the records in the order of `keys`. An image may stand in two rows, under two titles: then
# all else has to be the same.
function(make_records)
    get_property(keys GLOBAL PROPERTY keys)
    list(SORT keys)
    set(sha1_before "")
    set(titles_of_image 0)
    foreach(key_of_row IN LISTS keys)
        string(SUBSTRING "${key_of_row}" 0 40 sha1)
        string(SUBSTRING "${key_of_row}" 40 -1 key)
        get_property(image GLOBAL PROPERTY image_${key})
        get_property(title_offset GLOBAL PROPERTY title_offset_${key})
        math(EXPR row "${key} - ${first_key}")
        if(NOT sha1 STREQUAL sha1_before)
            set(titles_of_image 0)
        elseif(NOT image STREQUAL image_before)
            fail_at_row(${row} "has the SHA-1 of another row, but not all of its values: ${sha1}")
        endif()
        math(EXPR titles_of_image "${titles_of_image} + 1")
        if(titles_of_image GREATER 2)
            fail_at_row(${row} "is the third title of the image ${sha1}")
        endif()
        set(sha1_before "${sha1}")
        set(image_before "${image}")
        set_property(GLOBAL APPEND_STRING PROPERTY records
            "    {${image}, ${title_offset}},\n")
    endforeach()
endfunction()

read_rows(row_count)
if(row_count EQUAL 0)
    message(FATAL_ERROR "${INPUT}: holds no row")
endif()
make_records()
get_property(records GLOBAL PROPERTY records)
get_property(titles GLOBAL PROPERTY titles)
get_property(title_bytes GLOBAL PROPERTY title_bytes)

# The literal ends in a zero of its own behind that of the last title.
file(WRITE "${OUTPUT}" "// Made from the table of known dumps; edit data/known_dumps.tsv instead.
#include \"cart/known_dump_table.h\"

const std::size_t knownDumpCount = ${row_count};
const KnownDumpRecord knownDumpRecords[${row_count}] = {
${records}};

const std::size_t knownDumpTitleBytes = ${title_bytes} + 1;
const char knownDumpTitles[${title_bytes} + 1] =
${titles}    ;
")
