# SPDX-License-Identifier: MIT
# Each vector kernel is compiled for its own instruction set, and nothing else is.

if(CMAKE_CXX_COMPILER_ID STREQUAL MSVC)
    # Knows all intrinsics at any time; the option makes the code around them fit.
    set(VELMORA_AVX2_OPTIONS /arch:AVX2)
    set(VELMORA_SSSE3_OPTIONS)
    set(VELMORA_XGETBV_OPTIONS)
else()
    set(VELMORA_AVX2_OPTIONS -mavx2)
    set(VELMORA_SSSE3_OPTIONS -mssse3)
    set(VELMORA_XGETBV_OPTIONS -mxsave)
    if(MINGW AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        # GCC for Win64 does not align the stack to 32 bytes, but spills as if it did.
        list(APPEND VELMORA_AVX2_OPTIONS -Wa,-muse-unaligned-vector-move)
    endif()
endif()

# Called in the folder that makes the target with these sources.
function(velmora_set_kernel_options)
    set(room ${PROJECT_SOURCE_DIR}/acquisition/kernels)
    set_source_files_properties(${room}/frame_copy_avx2.cpp PROPERTIES COMPILE_OPTIONS
                                                                       "${VELMORA_AVX2_OPTIONS}")
    set_source_files_properties(${room}/frame_copy_ssse3.cpp PROPERTIES COMPILE_OPTIONS
                                                                        "${VELMORA_SSSE3_OPTIONS}")
    set_source_files_properties(${room}/processor.cpp PROPERTIES COMPILE_OPTIONS
                                                                 "${VELMORA_XGETBV_OPTIONS}")
endfunction()
