/* SPDX-License-Identifier: MIT
 * Called at every basic block of the traced sources: writes which were reached, as
 * addresses, to the file that the environment names. */
#include <stdatomic.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

enum { places = 1 << 16 };
static _Atomic(uintptr_t) reached[places];

void __sanitizer_cov_trace_pc(void);
void __sanitizer_cov_trace_pc(void) {
    const uintptr_t address = (uintptr_t)__builtin_return_address(0);
    uintptr_t place = address * UINT64_C(0x9E3779B97F4A7C15) >> 48;
    for (;; place = (place + 1) % places) {
        uintptr_t found = atomic_load_explicit(&reached[place], memory_order_relaxed);
        if (found == address) {
            return;
        }
        if (found == 0 && atomic_compare_exchange_strong(&reached[place], &found, address)) {
            return;
        }
        if (found == address) {
            return;
        }
    }
}

__attribute__((destructor)) static void writeReached(void) {
    const char* name = getenv("MUTANTS_TRACE");
    FILE* file = name != NULL ? fopen(name, "w") : NULL;
    if (file == NULL) {
        return;
    }
    for (int i = 0; i < places; ++i) {
        if (reached[i] != 0) {
            fprintf(file, "%lx\n", (unsigned long)reached[i]);
        }
    }
    fclose(file);
}
