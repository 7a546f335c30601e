# SPDX-License-Identifier: MIT
# Sanitizers and coverage: flags for the whole build, GoogleTest included, since
# half-instrumented programs report what is not there.

if(VELMORA_SANITIZE)
    # The first finding ends the program, so that no test passes over one.
    add_compile_options(-fsanitize=${VELMORA_SANITIZE} -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${VELMORA_SANITIZE})
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()

if(VELMORA_FUZZ)
    # Lets the fuzzers see which code an input reaches.
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(VELMORA_COVERAGE)
    add_compile_options(--coverage -O0)
    add_link_options(--coverage)
endif()
