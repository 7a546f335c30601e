# SPDX-License-Identifier: MIT
# SOURCE must compile as it is, and must not with MUST_NOT_COMPILE defined; the error
# must match the regular expression in its line "// Error: ...".
cmake_minimum_required(VERSION 3.25)

file(STRINGS ${SOURCE} expected REGEX "^// Error: ")
string(REPLACE "// Error: " "" expected "${expected}")
if(NOT expected)
    message(FATAL_ERROR "${SOURCE} does not say which error it expects")
endif()
set(command ${COMPILER} -std=c++20 -fsyntax-only -DCAPTURE_LIBRARY_STATIC -I${ROOT} -I${ROOT}/include -isystem
            ${ROOT}/tests/win32 ${SOURCE})

execute_process(COMMAND ${command} RESULT_VARIABLE result ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${SOURCE} does not compile even without its bad line:\n${errors}")
endif()
execute_process(COMMAND ${command} -DMUST_NOT_COMPILE RESULT_VARIABLE result ERROR_VARIABLE errors)
if(result EQUAL 0)
    message(FATAL_ERROR "${SOURCE} compiles, bad line included")
endif()
if(NOT errors MATCHES "${expected}")
    message(FATAL_ERROR "${SOURCE} fails for another reason than '${expected}':\n${errors}")
endif()
