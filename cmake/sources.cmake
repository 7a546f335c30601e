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
