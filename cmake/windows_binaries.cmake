# SPDX-License-Identifier: MIT
# How every .dll and .exe is linked.

# The runtime is part of each binary: an adapter that wanted a compiler's DLL
# beside it could not be loaded from another folder.
if(NOT CMAKE_MSVC_RUNTIME_LIBRARY)
    set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
endif()

function(target_use_windows_binary target)
    if(NOT WIN32)
        return()
    endif()
    if(MSVC)
        # /Brepro: no time of day in the file, so that the same sources give the same bytes.
        target_link_options(${target} PRIVATE /DYNAMICBASE /NXCOMPAT /HIGHENTROPYVA /Brepro)
    else()
        target_link_options(
            ${target}
            PRIVATE
            -static
            -Wl,--dynamicbase
            -Wl,--nxcompat
            -Wl,--high-entropy-va
            -Wl,--no-insert-timestamp
            $<$<CONFIG:Release>:-s>)
    endif()
    set_target_properties(${target} PROPERTIES PREFIX "")
endfunction()
