# SPDX-License-Identifier: MIT
# What is installed are the public headers, and each compiles as C11 by itself.
# -D COMPILER=... -D BUILD=... -D WORK=... -P check_installed_headers.cmake
file(REMOVE_RECURSE ${WORK})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK} OUTPUT_QUIET
                        COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE installed RELATIVE ${WORK} ${WORK}/*)
list(SORT installed)
set(wanted include/velmora/host_blocks.h include/velmora/video_channel_record.h)
if(NOT installed STREQUAL wanted)
    message(FATAL_ERROR "installed: ${installed}")
endif()
foreach(header IN LISTS installed)
    execute_process(
        COMMAND ${COMPILER} -x c -std=c11 -Wall -Wextra -pedantic-errors -Werror -fsyntax-only -I
                ${WORK}/include ${WORK}/${header}
        RESULT_VARIABLE result
        ERROR_VARIABLE text)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${header} is no C11 by itself:\n${text}")
    endif()
endforeach()
