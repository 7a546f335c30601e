# SPDX-License-Identifier: MIT
# Checks one CLAIM about the Windows file BINARY by reading it: EXPORTS, IMPORTS and
# DELAYED_IMPORTS are files with the approved names, one per line, sorted.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${OBJDUMP} -p ${BINARY} OUTPUT_VARIABLE dump COMMAND_ERROR_IS_FATAL ANY)

# Sets `result` to the first group of every match of `regex` in the dump, sorted.
function(names_in_dump regex result)
    string(REGEX MATCHALL "${regex}" lines "${dump}")
    set(names)
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "${regex}" "\\1" name "${line}")
        list(APPEND names ${name})
    endforeach()
    list(SORT names)
    set(${result} "${names}" PARENT_SCOPE)
endfunction()

function(expect_same found approved_file)
    file(STRINGS ${approved_file} approved)
    if(NOT "${found}" STREQUAL "${approved}")
        message(FATAL_ERROR "${BINARY} has\n  ${found}\nbut ${approved_file} has\n  ${approved}")
    endif()
endfunction()

names_in_dump("\tDLL Name: ([^\n]+)" imports)

if(CLAIM STREQUAL "ExportsAreTheApprovedOnes")
    # The table of names: "[   0] GetVideoChannel"; ld 2.40 adds "+base[   1]  0000 ".
    string(REGEX REPLACE ".*\\[Ordinal/Name Pointer\\] Table" "" dump "${dump}")
    string(REGEX REPLACE "\n\n.*" "" dump "${dump}")
    names_in_dump("\n\t\\[[^]]*\\][^\n]*[ \t]([A-Za-z_][^ \t\n]*)" exports)
    expect_same("${exports}" ${EXPORTS})
elseif(CLAIM STREQUAL "ImportsAreTheApprovedOnes")
    expect_same("${imports}" ${IMPORTS})
elseif(CLAIM STREQUAL "DoesNotImportTheCaptureLibrary")
    if(NOT imports MATCHES "KERNEL32.dll|kernel32.dll")
        message(FATAL_ERROR "No import of the kernel was read: ${imports}")
    endif()
    if(imports MATCHES "ORV_CAPLB11")
        message(FATAL_ERROR "The capture library is an ordinary import: ${imports}")
    endif()
elseif(CLAIM STREQUAL "IsHardened")
    foreach(flag IN ITEMS DYNAMIC_BASE NX_COMPAT HIGH_ENTROPY_VA)
        if(NOT dump MATCHES "${flag}")
            message(FATAL_ERROR "${BINARY} lacks ${flag}")
        endif()
    endforeach()
    # Without relocations the loader could not move the file, whatever the flags say.
    execute_process(COMMAND ${OBJDUMP} -h ${BINARY} OUTPUT_VARIABLE sections COMMAND_ERROR_IS_FATAL ANY)
    if(NOT sections MATCHES "\\.reloc")
        message(FATAL_ERROR "${BINARY} has no relocations")
    endif()
elseif(CLAIM STREQUAL "CarriesItsVersion")
    file(READ ${BINARY} bytes HEX)
    # "Velmora camera adapter" and "0.1.0.0" in UTF-16, and the mark of a fixed version block.
    foreach(
        text IN
        ITEMS "560065006c006d006f00720061002000630061006d00650072006100200061006400610070007400650072"
              "30002e0031002e0030002e003000" "bd04effe")
        if(NOT bytes MATCHES "${text}")
            message(FATAL_ERROR "${BINARY} has no version resource with ${text}")
        endif()
    endforeach()
elseif(CLAIM STREQUAL "DelaysTheApprovedImports")
    # Read through the directory of delayed imports: a linker that leaves it empty fails.
    execute_process(COMMAND ${READOBJ} --coff-imports ${BINARY} OUTPUT_VARIABLE dump
                    COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX REPLACE ".*\nDelayImport {" "" delayed "${dump}")
    if(NOT delayed MATCHES "^\n  Name: ORV_CAPLB11_x64.dll\n")
        message(FATAL_ERROR "${BINARY} does not delay the capture library alone:\n${dump}")
    endif()
    set(dump "${delayed}")
    names_in_dump("\n    Symbol: ([^ \n]+)" delayed_imports)
    expect_same("${delayed_imports}" ${DELAYED_IMPORTS})
elseif(CLAIM STREQUAL "ExportsTheApprovedFunctions")
    execute_process(COMMAND ${READOBJ} --coff-exports ${BINARY} OUTPUT_VARIABLE dump
                    COMMAND_ERROR_IS_FATAL ANY)
    names_in_dump("\n  Name: (\\?[^ \n]+)" exports)
    expect_same("${exports}" ${EXPORTS})
    file(STRINGS ${DELAYED_IMPORTS} wanted)
    list(REMOVE_ITEM wanted ${exports})
    if(wanted)
        message(FATAL_ERROR "${BINARY} lacks what the adapter imports: ${wanted}")
    endif()
else()
    message(FATAL_ERROR "Unknown claim '${CLAIM}'")
endif()
