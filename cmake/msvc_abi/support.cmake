# SPDX-License-Identifier: MIT
# Read at the end of project() in the preset windows-msvc-abi: builds what Microsoft's
# own libraries would bring, and links it into everything that follows.

# libc++'s std::array and std::string_view with classes for iterators, as Microsoft's
# library has them (include/cxx/class_iterator.h).
function(take_class_iterators header)
    file(READ ${VELMORA_LIBCXX_HEADERS}/${header} text)
    string(REPLACE "#include <iterator>" "#include <iterator>\n#include <class_iterator.h>" text "${text}")
    string(REGEX REPLACE "typedef value_type\\* +iterator;"
                         "typedef ::msvc_abi::CIterator<value_type> iterator;" text "${text}")
    string(REGEX REPLACE "typedef (const value_type\\*|const_pointer) +const_iterator;"
                         "typedef ::msvc_abi::CIterator<const value_type> const_iterator;" text
                         "${text}")
    string(REGEX REPLACE "(const_iterator c(begin|end)\\(\\) +const _NOEXCEPT { return) ([^;]*);"
                         "\\1 const_iterator(\\3);" text "${text}")
    if(NOT text MATCHES "class_iterator.h.*CIterator<const value_type>")
        message(FATAL_ERROR "<${header}> of libc++ is not the one that was expected")
    endif()
    file(CONFIGURE OUTPUT ${VELMORA_MADE_HEADERS}/${header} CONTENT "${text}" @ONLY)
endfunction()
take_class_iterators(array)
take_class_iterators(string_view)

# Wine's import libraries under the names that a linker for Windows looks for.
set(import_libraries ${PROJECT_BINARY_DIR}/import_libraries)
file(MAKE_DIRECTORY ${import_libraries})
foreach(
    name IN
    ITEMS advapi32
          comdlg32
          gdi32
          kernel32
          ole32
          oleaut32
          shell32
          ucrtbase
          user32
          uuid
          vcruntime140
          winspool)
    file(CREATE_LINK ${VELMORA_WINE_LIBRARIES}/lib${name}.a ${import_libraries}/${name}.lib
         SYMBOLIC)
endforeach()
execute_process(
    COMMAND ${CMAKE_DLLTOOL} -m i386:x86-64 -d ${CMAKE_CURRENT_LIST_DIR}/msvcp140.def -l
            ${import_libraries}/msvcp140.lib
    COMMAND_ERROR_IS_FATAL ANY)
link_directories(${import_libraries})

add_library(
    msvc_abi_support STATIC
    ${CMAKE_CURRENT_LIST_DIR}/dll_main.cpp
    ${CMAKE_CURRENT_LIST_DIR}/dll_start.cpp
    ${CMAKE_CURRENT_LIST_DIR}/image_start.cpp
    ${CMAKE_CURRENT_LIST_DIR}/libcxx_exception_pointer.cpp
    ${CMAKE_CURRENT_LIST_DIR}/libcxx_numbers.cpp
    ${CMAKE_CURRENT_LIST_DIR}/libcxx_strings.cpp
    ${CMAKE_CURRENT_LIST_DIR}/libcxx_support.cpp
    ${CMAKE_CURRENT_LIST_DIR}/libcxx_threads.cpp
    ${CMAKE_CURRENT_LIST_DIR}/new_delete.cpp
    ${CMAKE_CURRENT_LIST_DIR}/program_start.cpp
    ${CMAKE_CURRENT_LIST_DIR}/stack_probe.cpp
    ${CMAKE_CURRENT_LIST_DIR}/thread_local_storage.cpp
    ${CMAKE_CURRENT_LIST_DIR}/thread_safe_statics.cpp
    ${CMAKE_CURRENT_LIST_DIR}/type_info_table.cpp)
set_source_files_properties(${CMAKE_CURRENT_LIST_DIR}/type_info_table.cpp PROPERTIES COMPILE_OPTIONS
                                                                                     /GR-)
# Under the name that Microsoft's has, so that the product's build finds it as there.
add_library(delayimp STATIC ${CMAKE_CURRENT_LIST_DIR}/delay_load.cpp
                            ${CMAKE_CURRENT_LIST_DIR}/delay_load_hook.cpp)
foreach(target IN ITEMS msvc_abi_support delayimp)
    target_compile_features(${target} PRIVATE cxx_std_20)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
    target_compile_options(${target} PRIVATE /W4 /WX /EHs /EHc-)
endforeach()

link_libraries(msvc_abi_support msvcp140 vcruntime140 ucrtbase)
