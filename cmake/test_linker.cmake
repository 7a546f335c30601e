# SPDX-License-Identifier: MIT
# A quick linker for test programs of Windows that are made elsewhere. Code that is not
# optimised comes in tens of thousands of sections: GNU's linker takes 40 s for those of
# camhost's logic tests, LLVM's half a second. What we ship is linked by GNU's.
# A macro, since the rule holds for the folder that calls, and those below it.
macro(velmora_use_quick_linker)
    find_program(VELMORA_CLANG NAMES clang++-14 clang++)
    find_program(VELMORA_LLD NAMES ld.lld ld.lld-14)
    if(MINGW AND CMAKE_HOST_UNIX AND VELMORA_CLANG AND VELMORA_LLD)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-libgcc-file-name
                        OUTPUT_VARIABLE quick_linker_libgcc OUTPUT_STRIP_TRAILING_WHITESPACE
                        COMMAND_ERROR_IS_FATAL ANY)
        cmake_path(GET quick_linker_libgcc PARENT_PATH quick_linker_libraries)
        string(CONCAT CMAKE_CXX_LINK_EXECUTABLE
               "${VELMORA_CLANG} --target=x86_64-w64-mingw32 -fuse-ld=lld "
               "-B${quick_linker_libraries} -L${quick_linker_libraries} "
               "<CMAKE_CXX_LINK_FLAGS> <LINK_FLAGS> <OBJECTS> -o <TARGET> "
               "<LINK_LIBRARIES> -lwinpthread")
    endif()
endmacro()
