# SPDX-License-Identifier: MIT
# Delayed import of the capture library: the adapter names its functions, but loads
# the file only at the first call into it.

set(VELMORA_CAPTURE_LIBRARY ORV_CAPLB11_x64.dll)
set(VELMORA_CAPTURE_IMPORT_LIBRARY "" CACHE FILEPATH
    "Import library of the capture library; empty: that of the virtual cameras")

# Makes the target delay_import from an import library (a file, or a generator expression
# that gives one). Further arguments are targets that have to be built first.
# GNU: from its symbols, the functions of namespace DShowLib, by name and without
# ordinals. Any library with the same declarations then fits, and what the virtual
# cameras export for tests is not importable at all.
function(velmora_add_delayed_import delay_import import_library)
    add_library(${delay_import} INTERFACE)
    if(MSVC)
        target_link_libraries(${delay_import} INTERFACE ${import_library} delayimp)
        target_link_options(${delay_import} INTERFACE /DELAYLOAD:${VELMORA_CAPTURE_LIBRARY})
        if(ARGN)
            add_dependencies(${delay_import} ${ARGN})
        endif()
        return()
    endif()
    set(imports ${PROJECT_BINARY_DIR}/delayed_import/capture_library.def)
    set(archive ${PROJECT_BINARY_DIR}/delayed_import/libcapture_library_delayed.a)
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/delayed_import)
    add_custom_command(
        OUTPUT ${archive}
        COMMAND ${CMAKE_COMMAND} -D NM=${CMAKE_NM} -D IMPORT_LIBRARY=${import_library} -D
                IMPORTS=${imports} -D LIBRARY=${VELMORA_CAPTURE_LIBRARY} -P
                ${PROJECT_SOURCE_DIR}/cmake/write_import_list.cmake
        COMMAND ${CMAKE_DLLTOOL} --input-def ${imports} --dllname ${VELMORA_CAPTURE_LIBRARY}
                --output-delaylib ${archive}
        DEPENDS ${ARGN} ${PROJECT_SOURCE_DIR}/cmake/write_import_list.cmake
        COMMENT "Making the delayed import of ${VELMORA_CAPTURE_LIBRARY}"
        VERBATIM)
    add_custom_target(${delay_import}_archive DEPENDS ${archive})
    add_dependencies(${delay_import} ${delay_import}_archive)
    target_link_libraries(${delay_import} INTERFACE ${archive} delayimp)
endfunction()
