# SPDX-License-Identifier: MIT
# GoogleTest from its sources, compiled for the target with the build's own flags, and
# what the test programs share in how they are compiled.
include(GoogleTest)

set(VELMORA_GOOGLE_TEST /usr/src/googletest CACHE PATH "Folder of GoogleTest's sources")
if(NOT EXISTS ${VELMORA_GOOGLE_TEST}/CMakeLists.txt)
    message(FATAL_ERROR "No GoogleTest sources in '${VELMORA_GOOGLE_TEST}': install the package "
                        "googletest, set VELMORA_GOOGLE_TEST, or turn VELMORA_TESTS off")
endif()
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(gtest_force_shared_crt OFF CACHE BOOL "" FORCE)
# Not part of "all": only what a test links is compiled.
add_subdirectory(${VELMORA_GOOGLE_TEST} ${PROJECT_BINARY_DIR}/google_test EXCLUDE_FROM_ALL)

# Test code is compiled far more often than it is run, and half of that time went into
# optimising it and into describing its variables. What it tests keeps its build's flags.
function(target_use_test_code target)
    if(NOT MSVC)
        target_compile_options(${target} PRIVATE -O0 -g1)
    endif()
endfunction()

# For tests that go through so many orders or visits that optimising costs less than it
# saves. Such a target takes no precompiled headers of what is not optimised.
function(target_optimise_test_code target)
    if(NOT MSVC)
        target_compile_options(${target} PRIVATE -O1 -g1)
        set_target_properties(${target} PROPERTIES DISABLE_PRECOMPILE_HEADERS ON)
    endif()
endfunction()

foreach(target IN ITEMS gtest gtest_main gmock)
    target_use_test_code(${target})
endforeach()

# GoogleTest's headers, parsed once for all test programs. Nothing else is among them:
# a test's other includes are its own. A launcher's cache would miss each use of them, and
# Microsoft's compiler takes them only where every definition of the command line is the same.
if(CMAKE_CXX_COMPILER_LAUNCHER OR MSVC)
    set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
endif()
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/google_test/test_headers.cpp CONTENT "" @ONLY)
add_library(test_headers OBJECT ${PROJECT_BINARY_DIR}/google_test/test_headers.cpp)
target_link_libraries(test_headers PRIVATE gmock gtest)
target_precompile_headers(test_headers PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
target_use_warnings(test_headers)
target_use_test_code(test_headers)
