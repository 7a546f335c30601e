# SPDX-License-Identifier: MIT
# Each vector kernel is compiled for its own instruction set, and nothing else is.

# Called in the folder that makes the target with these sources.
function(velmora_set_kernel_options)
    set(room ${PROJECT_SOURCE_DIR}/acquisition/kernels)
    if(CMAKE_CXX_COMPILER_ID STREQUAL MSVC)
        # Knows all intrinsics at any time; the option makes the code around them fit.
        set_source_files_properties(${room}/frame_copy_avx2.cpp PROPERTIES COMPILE_OPTIONS /arch:AVX2)
        return()
    endif()
    set(avx2 -mavx2)
    if(MINGW AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        # GCC for Win64 does not align the stack to 32 bytes, but spills as if it did.
        list(APPEND avx2 -Wa,-muse-unaligned-vector-move)
    endif()
    set_source_files_properties(${room}/frame_copy_ssse3.cpp PROPERTIES COMPILE_OPTIONS -mssse3)
    set_source_files_properties(${room}/frame_copy_avx2.cpp PROPERTIES COMPILE_OPTIONS "${avx2}")
    set_source_files_properties(${room}/processor.cpp PROPERTIES COMPILE_OPTIONS -mxsave)
endfunction()
