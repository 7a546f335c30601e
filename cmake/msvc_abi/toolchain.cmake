# SPDX-License-Identifier: MIT
# Toolchain: 64-bit Windows binaries of Microsoft's ABI, made on Linux with clang-cl,
# lld-link, libc++'s headers and Wine's headers and import libraries.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

set(CMAKE_C_COMPILER clang-cl-14)
set(CMAKE_CXX_COMPILER clang-cl-14)
set(CMAKE_LINKER lld-link-14)
set(CMAKE_AR llvm-lib-14)
set(CMAKE_DLLTOOL llvm-dlltool-14)
set(CMAKE_RC_COMPILER llvm-rc-14)
set(CMAKE_MT llvm-mt-14)
# For the checks of what was built.
set(CMAKE_OBJDUMP x86_64-w64-mingw32-objdump)
set(CMAKE_READOBJ llvm-readobj-14)
set(VELMORA_UNDNAME llvm-undname-14)

# A program can not be linked before the support library is there.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

set(llvm /usr/lib/llvm-14)
set(wine_headers /usr/include/wine/wine)
set(own_headers ${CMAKE_CURRENT_LIST_DIR}/include)
set(VELMORA_LIBCXX_HEADERS ${llvm}/include/c++/v1)
set(VELMORA_MADE_HEADERS ${CMAKE_BINARY_DIR}/made_headers)
set(VELMORA_WINE_LIBRARIES /usr/lib/x86_64-linux-gnu/wine/x86_64-windows)

# The search order counts: ours complete libc++'s, and then Wine's. No other folder.
set(c_headers "-imsvc ${own_headers}/c -imsvc ${llvm}/lib/clang/14.0.6/include \
-imsvc ${wine_headers}/msvcrt -imsvc ${wine_headers}/windows")
set(cxx_headers "-imsvc ${VELMORA_MADE_HEADERS} -imsvc ${own_headers}/cxx \
-imsvc ${VELMORA_LIBCXX_HEADERS}")

# /GS- since its checks live in Microsoft's library.
set(flags "--target=x86_64-pc-windows-msvc -fms-compatibility-version=19.34 /X /GS- \
-D_UCRT -DWINE_UNICODE_NATIVE -D_WIN32_WINNT=0x0A00")
set(libcxx "-D_LIBCPP_DISABLE_VISIBILITY_ANNOTATIONS -D_LIBCPP_HAS_THREAD_API_WIN32 \
-D_LIBCPP_NO_AUTO_LINK")
set(CMAKE_C_FLAGS_INIT "${flags} ${c_headers}")
# TOML_FLOAT_CHARCONV: else its numbers go through streams, which have no compiled part.
set(CMAKE_CXX_FLAGS_INIT "${flags} ${libcxx} -DTOML_FLOAT_CHARCONV=1 ${cxx_headers} ${c_headers}")
set(CMAKE_RC_FLAGS_INIT "-I ${wine_headers}/windows -I ${wine_headers}/msvcrt")

# No static C runtime exists here, and the objects name libraries of Microsoft's.
set(CMAKE_MSVC_RUNTIME_LIBRARY MultiThreadedDLL)
foreach(kind IN ITEMS EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "/NODEFAULTLIB /MANIFEST:NO")
endforeach()

set(CMAKE_FIND_ROOT_PATH /nowhere)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Lets CTest run what was built.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../../scripts/wine_run.sh)
