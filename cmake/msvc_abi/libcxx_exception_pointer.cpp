// SPDX-License-Identifier: MIT
// Replaces a compiled part of libc++ 14: exceptions kept for later. What they are made of
// is known to Microsoft's runtime alone, which has these functions for them.
#include <exception>

void __ExceptionPtrAssign(void* to, const void* from);
void __ExceptionPtrCopy(void* to, const void* from);
void __ExceptionPtrCreate(void* made);
void __ExceptionPtrCurrentException(void* found);
void __ExceptionPtrDestroy(void* unwanted);
[[noreturn]] void __ExceptionPtrRethrow(const void* kept);
bool __ExceptionPtrToBool(const void* kept);

namespace std {

exception_ptr::exception_ptr() noexcept {
    ::__ExceptionPtrCreate(this);
}

exception_ptr::exception_ptr(const exception_ptr& other) noexcept {
    ::__ExceptionPtrCopy(this, &other);
}

exception_ptr& exception_ptr::operator=(const exception_ptr& other) noexcept {
    ::__ExceptionPtrAssign(this, &other);
    return *this;
}

exception_ptr::~exception_ptr() noexcept {
    ::__ExceptionPtrDestroy(this);
}

exception_ptr::operator bool() const noexcept {
    return ::__ExceptionPtrToBool(this);
}

exception_ptr current_exception() noexcept {
    exception_ptr found;
    ::__ExceptionPtrCurrentException(&found);
    return found;
}

void rethrow_exception(exception_ptr kept) {
    ::__ExceptionPtrRethrow(&kept);
}

}  // namespace std
