# SPDX-License-Identifier: MIT
# Header-only packages of the tools (never of the adapter): target header_only_deps.
# Where we cross-compile they come from the build machine. Its include root must not
# be searched, since its C library's headers would come along; so the wanted folders
# alone are linked into one folder of the build.

add_library(header_only_deps INTERFACE)

function(velmora_add_header_only_dep header folder)
    string(MAKE_C_IDENTIFIER "VELMORA_ROOT_${folder}" variable)
    if(CMAKE_CROSSCOMPILING)
        find_path(${variable} NAMES ${header} PATHS /usr/include /usr/local/include
                  NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
    else()
        find_path(${variable} NAMES ${header})
    endif()
    if(NOT ${variable})
        message(WARNING "${header} not found; what needs it will not build")
        return()
    endif()
    if(CMAKE_HOST_WIN32)
        # Nothing else lies there; and a link takes a right that users do not have, while a
        # folder would not be copied in its place.
        target_include_directories(header_only_deps SYSTEM INTERFACE ${${variable}})
        return()
    endif()
    set(isolated ${PROJECT_BINARY_DIR}/header_only_deps)
    file(MAKE_DIRECTORY ${isolated})
    file(CREATE_LINK ${${variable}}/${folder} ${isolated}/${folder} COPY_ON_ERROR SYMBOLIC)
    target_include_directories(header_only_deps SYSTEM INTERFACE ${isolated})
endfunction()

velmora_add_header_only_dep(nlohmann/json.hpp nlohmann)
velmora_add_header_only_dep(CLI/CLI.hpp CLI)
velmora_add_header_only_dep(stb/stb_image_write.h stb)
velmora_add_header_only_dep(toml++/toml.h toml++)
velmora_add_header_only_dep(boost/beast.hpp boost)
