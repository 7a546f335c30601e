# SPDX-License-Identifier: MIT
# Checks of what was built and of the sources, as tests.

function(velmora_add_check name)
    add_test(NAME ${VELMORA_BUILD_NAME}/${name} COMMAND ${ARGN})
    set_tests_properties(${VELMORA_BUILD_NAME}/${name} PROPERTIES LABELS "${VELMORA_BUILD_NAME};check"
                                                                  TIMEOUT 300)
endfunction()

# No test source is left out of the programs.
get_property(test_sources GLOBAL PROPERTY VELMORA_TEST_SOURCES)
get_property(folders_elsewhere GLOBAL PROPERTY VELMORA_TEST_FOLDERS_ELSEWHERE)
list(JOIN folders_elsewhere "," folders_elsewhere)
list(JOIN test_sources "\n" test_source_lines)
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/test_sources.txt "${test_source_lines}\n")
velmora_add_check(
    Sources.EveryTestIsPartOfAProgram
    ${CMAKE_COMMAND} -D ROOT=${PROJECT_SOURCE_DIR} -D BUILT=${CMAKE_CURRENT_BINARY_DIR}/test_sources.txt
    -D "ELSEWHERE=${folders_elsewhere}" -P ${PROJECT_SOURCE_DIR}/cmake/check_test_sources.cmake)

# The adapter's file: what it exports and imports, and how it may be loaded.
if(TARGET velmora_adapter AND NOT MSVC)
    set(golden ${PROJECT_SOURCE_DIR}/tests/golden)
    set(check_binary
        ${CMAKE_COMMAND} -D OBJDUMP=${CMAKE_OBJDUMP} -D BINARY=$<TARGET_FILE:velmora_adapter> -D
        EXPORTS=${golden}/adapter_exports.txt -D IMPORTS=${golden}/adapter_imports.txt)
    foreach(
        claim IN
        ITEMS ExportsAreTheApprovedOnes ImportsAreTheApprovedOnes DoesNotImportTheCaptureLibrary
              IsHardened CarriesItsVersion)
        velmora_add_check(AdapterFile.${claim} ${check_binary} -D CLAIM=${claim} -P
                          ${PROJECT_SOURCE_DIR}/cmake/check_binary.cmake)
    endforeach()
endif()

# The adapter's file is built without the virtual cameras' sources, against an import
# library that the builder names.
if(TARGET velmora_adapter AND NOT MSVC)
    velmora_add_check(
        Build.AdapterNeedsNoVirtualCameras
        ${CMAKE_COMMAND} -D ROOT=${PROJECT_SOURCE_DIR} -D WORK=${PROJECT_BINARY_DIR}/without_cameras -D
        TOOLCHAIN=${CMAKE_TOOLCHAIN_FILE} -D GENERATOR=${CMAKE_GENERATOR} -D
        IMPORT_LIBRARY=$<TARGET_LINKER_FILE:virtual_cameras> -P
        ${PROJECT_SOURCE_DIR}/cmake/check_build_without_cameras.cmake)
endif()

# What an integrator's host includes.
if(NOT WIN32)
    velmora_add_check(
        PublicHeaders.InstallAndCompileAsC ${CMAKE_COMMAND} -D COMPILER=${CMAKE_C_COMPILER} -D
        BUILD=${PROJECT_BINARY_DIR} -D WORK=${CMAKE_CURRENT_BINARY_DIR}/installed_headers -P
        ${PROJECT_SOURCE_DIR}/cmake/check_installed_headers.cmake)
endif()

# Completion and man page of camhost, as approved, in the programs that they are for.
if(NOT WIN32 AND TARGET camhost_core)
    set(camhost_golden ${PROJECT_SOURCE_DIR}/tests/golden/camhost)
    velmora_add_check(Completion.BashCompletesLinesOfCamhost
                      ${PROJECT_SOURCE_DIR}/tests/completion/completion_test.sh
                      ${camhost_golden}/completion.bash)
    find_program(VELMORA_GROFF groff)
    if(VELMORA_GROFF)
        velmora_add_check(ManPage.IsReadWithoutWarnings ${CMAKE_COMMAND} -D GROFF=${VELMORA_GROFF} -D
                          PAGE=${camhost_golden}/camhost.1 -P
                          ${PROJECT_SOURCE_DIR}/cmake/check_man_page.cmake)
    endif()
endif()

# What must not compile, does not; and each case compiles without its bad line. The build of
# the thread sanitizer has the compiler of the address sanitizer's.
if(NOT WIN32 AND NOT VELMORA_SANITIZE MATCHES "thread")
    file(GLOB cases CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/compile_fail/*.cpp)
    foreach(case IN LISTS cases)
        cmake_path(GET case STEM name)
        velmora_add_check(
            CompileFail.${name} ${CMAKE_COMMAND} -D COMPILER=${CMAKE_CXX_COMPILER} -D
            ROOT=${PROJECT_SOURCE_DIR} -D SOURCE=${case} -P
            ${PROJECT_SOURCE_DIR}/cmake/check_compile_fail.cmake)
    endforeach()
endif()

if(VELMORA_CHECKS)
    velmora_add_check(
        VectorKernels.ShareNoCodeWithOtherSources ${CMAKE_COMMAND} -D NM=${CMAKE_NM} -D
        "OBJECTS=$<JOIN:$<TARGET_OBJECTS:adapter_core>,$<COMMA>>" -P
        ${PROJECT_SOURCE_DIR}/cmake/check_kernel_objects.cmake)
    set(scripts ${PROJECT_SOURCE_DIR}/scripts)
    velmora_add_check(Sources.AreFormatted ${scripts}/check_format.sh)
    velmora_add_check(Sources.PageIsLintedAndFormatted ${scripts}/check_view_page.sh)
    set_tests_properties(${VELMORA_BUILD_NAME}/Sources.PageIsLintedAndFormatted PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 600)
    velmora_add_check(Sources.IncludeOnlyWhatTheLayoutAllows ${scripts}/check_includes.sh)
    velmora_add_check(Sources.IncludeCheckFindsBadEdges ${scripts}/check_includes_test.sh)
    velmora_add_check(Docs.NameTestsAndFilesThatAreThere ${scripts}/check_docs.sh)
    velmora_add_check(Sources.TidyCheckRemembersWhatPassed ${scripts}/check_tidy_test.sh)
    velmora_add_check(Mutants.FollowTheirRules python3 -B ${PROJECT_SOURCE_DIR}/tests/mutants/rules_test.py)
    velmora_add_check(Sources.TakeNoIteratorForAPointer ${scripts}/check_portability.sh)
    velmora_add_check(Sources.PortabilityCheckFindsBadLines ${scripts}/check_portability_test.sh)
    velmora_add_check(Sources.PassClangTidy ${scripts}/check_tidy.sh ${PROJECT_BINARY_DIR})
    # The longest of all, and on every core: first.
    cmake_host_system_information(RESULT cores QUERY NUMBER_OF_LOGICAL_CORES)
    set_tests_properties(${VELMORA_BUILD_NAME}/Sources.PassClangTidy
                         PROPERTIES TIMEOUT 3600 PROCESSORS ${cores} COST 10000)
endif()
