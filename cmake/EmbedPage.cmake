# SPDX-License-Identifier: MIT
# Puts the files of a folder into a program, as a table of names, types and bytes: see
# camhost/view/page_files.h. Made anew when one of them changes.

if(CMAKE_SCRIPT_MODE_FILE)
    # cmake -D FOLDER=f -D OUTPUT=file.cpp -P EmbedPage.cmake
    set(types
        "html=text/html\; charset=utf-8"
        "css=text/css\; charset=utf-8"
        "js=text/javascript\; charset=utf-8"
        "json=application/json"
        "txt=text/plain\; charset=utf-8"
        "svg=image/svg+xml"
        "png=image/png"
        "ico=image/x-icon")
    file(GLOB names RELATIVE ${FOLDER} ${FOLDER}/*)
    list(SORT names)
    set(count 0)
    foreach(name IN LISTS names)
        cmake_path(GET name EXTENSION LAST_ONLY extension)
        string(REPLACE "." "" extension "${extension}")
        set(type)
        foreach(row IN LISTS types)
            if(row MATCHES "^${extension}=(.*)$")
                set(type "${CMAKE_MATCH_1}")
            endif()
        endforeach()
        if(NOT type)
            message(FATAL_ERROR "${FOLDER}/${name}: no type is known for \".${extension}\"")
        endif()
        file(READ ${FOLDER}/${name} bytes HEX)
        string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
        string(REGEX REPLACE "(................................................................................)"
                             "\\1\n" bytes "${bytes}")
        string(APPEND arrays "constexpr std::uint8_t file${count}[] = {\n${bytes}};\n")
        string(APPEND rows "    {\"${name}\", \"${type}\", file${count}},\n")
        math(EXPR count "${count} + 1")
    endforeach()
    file(
        WRITE ${OUTPUT}
        "#include \"camhost/view/page_files.h\"\n\nnamespace camhost {\n\nnamespace {\n\n${arrays}\n"
        "constexpr PageFile files[] = {\n${rows}};\n\n}  // namespace\n\n"
        "std::span<const PageFile> pageFiles() {\n    return files;\n}\n\n}  // namespace camhost\n")
    return()
endif()

set(VELMORA_EMBED_PAGE ${CMAKE_CURRENT_LIST_FILE})

function(velmora_embed_page target folder)
    file(GLOB files CONFIGURE_DEPENDS ${folder}/*)
    set(output ${CMAKE_CURRENT_BINARY_DIR}/${target}_page.cpp)
    add_custom_command(
        OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} -D FOLDER=${folder} -D OUTPUT=${output} -P ${VELMORA_EMBED_PAGE}
        DEPENDS ${files} ${VELMORA_EMBED_PAGE}
        VERBATIM)
    target_sources(${target} PRIVATE ${output})
endfunction()
