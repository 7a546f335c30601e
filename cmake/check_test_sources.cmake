# SPDX-License-Identifier: MIT
# Fails when a test source under ROOT/tests or ROOT/fuzz is neither in the file BUILT
# (one path per line) nor in one of the folders ELSEWHERE
# (separated by commas).
cmake_minimum_required(VERSION 3.25)

file(STRINGS ${BUILT} built)
string(REPLACE "," ";" ELSEWHERE "${ELSEWHERE}")
file(GLOB_RECURSE present RELATIVE ${ROOT} ${ROOT}/tests/*_test.cpp ${ROOT}/tests/*_test.c
     ${ROOT}/fuzz/*_fuzz.cpp)
set(missing)
foreach(source IN LISTS present)
    cmake_path(GET source PARENT_PATH folder)
    if(NOT folder IN_LIST ELSEWHERE AND NOT "${ROOT}/${source}" IN_LIST built)
        list(APPEND missing ${source})
    endif()
endforeach()
if(missing)
    list(JOIN missing "\n  " lines)
    message(FATAL_ERROR "In no test program:\n  ${lines}")
endif()
list(LENGTH present count)
if(count LESS 10)
    message(FATAL_ERROR "Only ${count} test sources found: the search itself is broken")
endif()
