# SPDX-License-Identifier: MIT
# Of the object files OBJECTS (separated by commas) those of vector kernels must define no
# function that other sources may define as well: the linker would keep one of the two,
# and a processor without the vectors could meet theirs.
cmake_minimum_required(VERSION 3.25)

string(REPLACE "," ";" objects "${OBJECTS}")
list(FILTER objects INCLUDE REGEX "frame_copy_(ssse3|avx2)\\.cpp")
list(LENGTH objects count)
if(NOT count EQUAL 2)
    message(FATAL_ERROR "Not two vector kernels, but ${count}: ${objects}")
endif()
foreach(object IN LISTS objects)
    execute_process(COMMAND ${NM} --defined-only ${object} OUTPUT_VARIABLE symbols
                                                           COMMAND_ERROR_IS_FATAL ANY)
    if(NOT symbols MATCHES " T ")
        message(FATAL_ERROR "${object} defines nothing:\n${symbols}")
    endif()
    if(symbols MATCHES " [Wu] ")
        message(FATAL_ERROR "${object} shares code with other sources:\n${symbols}")
    endif()
endforeach()
