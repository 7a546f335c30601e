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
    # Counted in the source's own terms. Counts of the generated code have a branch for
    # every object that an exception would destroy.
    add_compile_options(-fprofile-instr-generate -fcoverage-mapping)
    add_link_options(-fprofile-instr-generate)
endif()
