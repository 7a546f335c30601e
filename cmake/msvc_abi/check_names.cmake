# SPDX-License-Identifier: MIT
# Fails when a mangled name in the file NAMES (one per line) is anything but a function
# that the headers in the folder HEADERS declare for import: data can not be delayed.
cmake_minimum_required(VERSION 3.25)

file(GLOB headers ${HEADERS}/*.h)
set(declarations)
foreach(header IN LISTS headers)
    file(STRINGS ${header} found REGEX "CAPTURE_LIBRARY_API [A-Za-z]")
    string(APPEND declarations "${found}\n")
endforeach()

file(STRINGS ${NAMES} names)
execute_process(COMMAND ${UNDNAME} ${names} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" lines "${text}")
# Such as "public: bool __cdecl DShowLib::Grabber::closeDev(void)", after the name itself.
list(FILTER lines EXCLUDE REGEX "^\\?")
foreach(line IN LISTS lines)
    if(NOT line MATCHES "__cdecl DShowLib::([A-Za-z]+)(::[^(]+)?\\(")
        message(FATAL_ERROR "Not a function of the capture library: ${line}")
    endif()
    set(declared ${CMAKE_MATCH_1})
    if(NOT declarations MATCHES "CAPTURE_LIBRARY_API [a-z ]*${declared}[ ;(]")
        message(FATAL_ERROR "No header of the capture library declares ${declared}: ${line}")
    endif()
endforeach()
list(LENGTH names count)
list(LENGTH lines read)
if(count LESS 50 OR NOT read EQUAL count)
    message(FATAL_ERROR "${count} names, ${read} of them read: the check itself is broken")
endif()
