# SPDX-License-Identifier: MIT
# GoogleTest from its sources, compiled for the target with the build's own flags.
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
