# SPDX-License-Identifier: MIT
# Fails when GROFF has a word to say about the man page PAGE, or prints nothing of it.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${GROFF} -man -Tascii -ww -b ${PAGE} OUTPUT_VARIABLE text ERROR_VARIABLE warnings
                COMMAND_ERROR_IS_FATAL ANY)
if(warnings)
    message(FATAL_ERROR "${warnings}")
endif()
if(NOT text MATCHES "interrupted")
    message(FATAL_ERROR "${PAGE} gives:\n${text}")
endif()
