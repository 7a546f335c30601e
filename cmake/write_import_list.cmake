# SPDX-License-Identifier: MIT
# Writes the import list (a .def file) for LIBRARY into IMPORTS: of the symbols of
# IMPORT_LIBRARY, as NM lists them, the functions of namespace DShowLib, by name.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${NM} --defined-only ${IMPORT_LIBRARY} OUTPUT_VARIABLE symbols
                ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL " T _ZN[KVRO]*8DShowLib[A-Za-z0-9_]+" functions "${symbols}")
list(TRANSFORM functions REPLACE "^ T " "")
list(SORT functions)
list(REMOVE_DUPLICATES functions)
if(NOT functions)
    message(FATAL_ERROR "${IMPORT_LIBRARY} names no function of the capture library")
endif()
list(JOIN functions "\n    " names)
file(WRITE ${IMPORTS} "LIBRARY ${LIBRARY}\nEXPORTS\n    ${names}\n")
