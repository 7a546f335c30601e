# SPDX-License-Identifier: MIT
# Writes the import list (a .def file) for LIBRARY into IMPORTS: of the linker's
# list EXPORTS, the functions of namespace DShowLib, by name.
cmake_minimum_required(VERSION 3.25)

file(STRINGS ${EXPORTS} lines REGEX "^ +_ZN[KVRO]*8DShowLib")
list(FILTER lines EXCLUDE REGEX " DATA")
list(TRANSFORM lines REPLACE "^ +([A-Za-z0-9_]+).*$" "\\1")
list(SORT lines)
if(NOT lines)
    message(FATAL_ERROR "${EXPORTS} names no function of the capture library")
endif()
list(JOIN lines "\n    " names)
file(WRITE ${IMPORTS} "LIBRARY ${LIBRARY}\nEXPORTS\n    ${names}\n")
