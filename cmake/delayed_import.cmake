# SPDX-License-Identifier: MIT
# Delayed import of the capture library: the adapter names its functions, but loads
# the file only at the first call into it.

set(VELMORA_CAPTURE_LIBRARY ORV_CAPLB11_x64.dll)

# Makes the target delay_import from the capture library that `library` builds.
# GNU: from the list of its exports, the functions of namespace DShowLib by name
# and without ordinals. Any library with the same declarations then fits, and
# what the virtual cameras export for tests is not importable at all.
function(velmora_add_delayed_import delay_import library)
    add_library(${delay_import} INTERFACE)
    add_dependencies(${delay_import} ${library})
    if(MSVC)
        target_link_libraries(${delay_import} INTERFACE $<TARGET_LINKER_FILE:${library}> delayimp)
        target_link_options(${delay_import} INTERFACE /DELAYLOAD:${VELMORA_CAPTURE_LIBRARY})
        return()
    endif()
    set(exports ${PROJECT_BINARY_DIR}/delayed_import/all_exports.def)
    set(imports ${PROJECT_BINARY_DIR}/delayed_import/capture_library.def)
    set(archive ${PROJECT_BINARY_DIR}/delayed_import/libcapture_library_delayed.a)
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/delayed_import)
    target_link_options(${library} PRIVATE -Wl,--output-def,${exports})
    add_custom_command(
        OUTPUT ${archive}
        COMMAND ${CMAKE_COMMAND} -D EXPORTS=${exports} -D IMPORTS=${imports} -D
                LIBRARY=${VELMORA_CAPTURE_LIBRARY} -P
                ${PROJECT_SOURCE_DIR}/cmake/write_import_list.cmake
        COMMAND ${CMAKE_DLLTOOL} --input-def ${imports} --dllname ${VELMORA_CAPTURE_LIBRARY}
                --output-delaylib ${archive}
        DEPENDS ${library} ${PROJECT_SOURCE_DIR}/cmake/write_import_list.cmake
        COMMENT "Making the delayed import of ${VELMORA_CAPTURE_LIBRARY}"
        VERBATIM)
    add_custom_target(${delay_import}_archive DEPENDS ${archive})
    add_dependencies(${delay_import} ${delay_import}_archive)
    target_link_libraries(${delay_import} INTERFACE ${archive} delayimp)
endfunction()
