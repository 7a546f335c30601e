# SPDX-License-Identifier: MIT
# Source lists come from the folders, so that a new file is in every build by itself.

# Sets `result` to the C++ sources of the folders (relative to the root, not recursive).
function(velmora_sources result)
    set(patterns)
    foreach(folder IN LISTS ARGN)
        list(APPEND patterns ${PROJECT_SOURCE_DIR}/${folder}/*.cpp
             ${PROJECT_SOURCE_DIR}/${folder}/*.h)
    endforeach()
    file(GLOB found CONFIGURE_DEPENDS ${patterns})
    # A folder of headers alone makes no target.
    if(NOT found MATCHES "\\.cpp")
        set(found)
    endif()
    set(${result} ${found} PARENT_SCOPE)
endfunction()

# Compiles the target's sources sixteen at a time: the headers that they share are compiled
# once for them all, but so is everything after a change of one. Only sources of one
# folder come together, so that two folders may use a name in their unnamed namespaces.
# Not for a library of which a program links the objects that it needs.
function(velmora_compile_together target)
    get_target_property(target_folder ${target} SOURCE_DIR)
    if(NOT VELMORA_COMPILE_TOGETHER OR (VELMORA_COMPILE_TOGETHER STREQUAL "TESTS" AND
                                        NOT target_folder MATCHES "^${PROJECT_SOURCE_DIR}/(tests|fuzz)"))
        return()
    endif()
    set(at_a_time 16)
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "\\.cpp$")
    foreach(source IN LISTS sources)
        cmake_path(GET source PARENT_PATH folder)
        string(MAKE_C_IDENTIFIER "${folder}" folder)
        list(APPEND in_${folder} ${source})
        list(LENGTH in_${folder} count)
        math(EXPR part "(${count} - 1) / ${at_a_time}")
        set_source_files_properties(${source} PROPERTIES UNITY_GROUP "${folder}_${part}")
    endforeach()
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()
