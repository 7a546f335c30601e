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
foreach(name IN LISTS names)
    execute_process(COMMAND ${UNDNAME} ${name} OUTPUT_VARIABLE text
                    COMMAND_ERROR_IS_FATAL ANY)
    # Such as "public: bool __cdecl DShowLib::Grabber::closeDev(void)".
    if(NOT text MATCHES "__cdecl DShowLib::([A-Za-z]+)(::[^(]+)?\\(")
        message(FATAL_ERROR "Not a function of the capture library: ${text}")
    endif()
    if(NOT declarations MATCHES "CAPTURE_LIBRARY_API [a-z ]*${CMAKE_MATCH_1}[ ;(]")
        message(FATAL_ERROR "No header of the capture library declares ${CMAKE_MATCH_1}: ${text}")
    endif()
endforeach()
list(LENGTH names count)
if(count LESS 50)
    message(FATAL_ERROR "Only ${count} names: the list itself is broken")
endif()
