# SPDX-License-Identifier: MIT
# One test program per layer, and its tests for CTest.

cmake_path(GET PROJECT_BINARY_DIR FILENAME VELMORA_BUILD_NAME)

# velmora_add_tests(NAME FOLDERS f... [LIBRARIES l...] [WHOLE_PROGRAM | PROCESS_PER_TEST]
#                   [OPTIMISED] [DESKTOP])
#   WHOLE_PROGRAM     where a process starts slowly, under Wine and with a sanitizer, CTest
#                     runs the program once, not once per test
#   PROCESS_PER_TEST  the same, but the program then forks for each test; not for Windows
#   OPTIMISED         as target_optimise_test_code says
#   DESKTOP           the tests look at the screen: one at a time
# Helpers for several layers lie in tests/support. An empty folder makes no program.
function(velmora_add_tests name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "WHOLE_PROGRAM;PROCESS_PER_TEST;OPTIMISED;DESKTOP" "" "FOLDERS;LIBRARIES")
    velmora_sources(sources ${arg_FOLDERS})
    if(NOT sources)
        return()
    endif()
    add_executable(${name} ${sources})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
    target_compile_definitions(${name} PRIVATE
                               VELMORA_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
    set(main gtest_main)
    set(arguments)
    if(arg_PROCESS_PER_TEST)
        set(main process_per_test_main)
        set(arguments --process-per-test)
    endif()
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} test_support velmora_headers gmock gtest ${main})
    if(WIN32)
        target_link_libraries(${name} PRIVATE ole32 oleaut32 uuid)
        if(TARGET capture_library_delayed AND "adapter_core" IN_LIST arg_LIBRARIES)
            target_link_libraries(${name} PRIVATE capture_library_delayed)
        endif()
    endif()
    target_use_warnings(${name})
    target_use_windows_binary(${name})
    if(arg_OPTIMISED)
        target_optimise_test_code(${name})
    else()
        target_use_test_code(${name})
    endif()
    velmora_compile_together(${name})
    target_precompile_headers(${name} REUSE_FROM test_headers)
    set_property(GLOBAL APPEND PROPERTY VELMORA_TEST_SOURCES ${sources})

    # Narrow text is UTF-8, in Wine's programs too.
    set(properties ENVIRONMENT LC_ALL=C.UTF-8 LABELS "${VELMORA_BUILD_NAME}")
    if(arg_DESKTOP)
        # They wait for each other and for boxes: the earlier they begin, the less is left to
        # wait for at the end.
        list(APPEND properties RESOURCE_LOCK desktop COST 1000)
    endif()
    if((arg_WHOLE_PROGRAM OR arg_PROCESS_PER_TEST) AND (WIN32 OR VELMORA_SANITIZE))
        add_test(NAME ${VELMORA_BUILD_NAME}/${name} COMMAND ${name} ${arguments})
        set_tests_properties(${VELMORA_BUILD_NAME}/${name} PROPERTIES ${properties} TIMEOUT 900)
    else()
        gtest_discover_tests(
            ${name}
            TEST_PREFIX ${VELMORA_BUILD_NAME}/
            DISCOVERY_MODE PRE_TEST
            DISCOVERY_TIMEOUT 300
            PROPERTIES ${properties} TIMEOUT 300)
    endif()
endfunction()

# Folders whose tests another kind of build (Windows or native) makes.
function(velmora_tests_elsewhere)
    set_property(GLOBAL APPEND PROPERTY VELMORA_TEST_FOLDERS_ELSEWHERE ${ARGN})
endfunction()

velmora_sources(support_sources tests/support)
if(support_sources)
    add_library(test_support STATIC ${support_sources})
    target_include_directories(test_support PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(test_support PUBLIC velmora_headers gmock gtest)
    if(NOT WIN32)
        target_link_libraries(test_support PUBLIC win32_subset)
    endif()
    target_use_warnings(test_support)
    target_use_test_code(test_support)
    velmora_compile_together(test_support)
    set_property(GLOBAL APPEND PROPERTY VELMORA_TEST_SOURCES ${support_sources})
else()
    add_library(test_support INTERFACE)
endif()
