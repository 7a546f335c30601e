# SPDX-License-Identifier: MIT
# Builds the adapter's file below WORK from a tree without the virtual cameras, the tests
# and what needs either, against IMPORT_LIBRARY.
cmake_minimum_required(VERSION 3.25)

set(tree ${WORK}/tree)
file(REMOVE_RECURSE ${tree})
file(MAKE_DIRECTORY ${tree})
file(COPY ${ROOT}/CMakeLists.txt DESTINATION ${tree})
foreach(folder IN ITEMS acquisition adapter bench camhost capture cmake examples fuzz include platform properties)
    if(EXISTS ${ROOT}/${folder})
        file(CREATE_LINK ${ROOT}/${folder} ${tree}/${folder} COPY_ON_ERROR SYMBOLIC)
    endif()
endforeach()

set(toolchain)
if(TOOLCHAIN)
    set(toolchain --toolchain ${TOOLCHAIN})
endif()
execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${tree} -B ${WORK}/build -G ${GENERATOR} ${toolchain}
            -D CMAKE_BUILD_TYPE=Debug -D VELMORA_TESTS=OFF
            -D VELMORA_CAPTURE_IMPORT_LIBRARY=${IMPORT_LIBRARY}
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}/build --target velmora_adapter
                COMMAND_ERROR_IS_FATAL ANY)
if(NOT EXISTS ${WORK}/build/bin/velmora_adapter.dll)
    message(FATAL_ERROR "no velmora_adapter.dll was built")
endif()
