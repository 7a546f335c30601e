# SPDX-License-Identifier: MIT
# Warnings, all of them errors. Every target of ours calls this.

function(target_use_warnings target)
    if(MSVC)
        # Exceptions leave through functions of C linkage: /EHs without c, which CMake's
        # own /EHsc has set before.
        # Functions that replace "unsafe" C ones are not standard: _CRT_SECURE_NO_WARNINGS.
        # Which functions of a header-only package nobody calls is told at the end of a
        # source, where the package's own level of warnings is over: no 4505.
        # Parsers and servers in headers make more sections than an object has by itself: /bigobj.
        # A kind without its row in a switch is no warning of the fourth level by itself: 4062.
        target_compile_options(${target} PRIVATE /W4 /w44062 /wd4505 /WX /permissive- /Zc:__cplusplus /utf-8
                                                 /EHs /EHc- /bigobj)
        target_compile_definitions(${target} PRIVATE _CRT_SECURE_NO_WARNINGS)
        return()
    endif()
    target_compile_options(
        ${target}
        PRIVATE -Wall
                -Wextra
                -Wpedantic
                -Werror
                -Wcast-align
                -Wconversion
                -Wdouble-promotion
                -Wformat=2
                -Wimplicit-fallthrough
                -Wshadow
                -Wsign-conversion
                -Wundef
                $<$<COMPILE_LANGUAGE:CXX>:-Wextra-semi>
                $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>
                $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>)
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        # GCC 12 sees overlaps of 2^63 bytes in the addition of two std::strings.
        target_compile_options(${target} PRIVATE -Wno-restrict)
    endif()
    if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
        target_compile_options(${target} PRIVATE -Wthread-safety)
    endif()
endfunction()
