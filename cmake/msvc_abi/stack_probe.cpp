// SPDX-License-Identifier: MIT
// Replaces __chkstk: a function whose frame, of rax bytes, is larger than a page calls
// it first, so that the guard pages below the stack are touched in their order. All
// registers are kept.
__asm__(R"(
    .intel_syntax noprefix
    .text
    .globl __chkstk
__chkstk:
    push rcx
    push rax
    lea rcx, [rsp + 24]
touchPage:
    cmp rax, 4096
    jb touchRest
    sub rcx, 4096
    test byte ptr [rcx], 0
    sub rax, 4096
    jmp touchPage
touchRest:
    sub rcx, rax
    test byte ptr [rcx], 0
    pop rax
    pop rcx
    ret
    .att_syntax
)");
