// SPDX-License-Identifier: MIT
// Replaces the header of Microsoft's runtime: std::exception and its kin, laid out as
// there, since thrown objects cross the borders of DLLs. Texts are copied and freed by
// functions of vcruntime140.dll.
#pragma once

#include <stddef.h>

extern "C" {

struct __std_exception_data {
    const char* _What;
    bool _DoFree;
};

void __cdecl __std_exception_copy(const __std_exception_data* from, __std_exception_data* to);
void __cdecl __std_exception_destroy(__std_exception_data* data);

}  // extern "C"

namespace std {

class exception {
public:
    exception() noexcept : _Data() {}
    explicit exception(const char* message) noexcept : _Data() {
        const __std_exception_data text = {message, true};
        __std_exception_copy(&text, &_Data);
    }
    // The text lives for ever.
    exception(const char* literal, int) noexcept : _Data{literal, false} {}
    exception(const exception& other) noexcept : _Data() {
        __std_exception_copy(&other._Data, &_Data);
    }
    exception& operator=(const exception& other) noexcept {
        if (this != &other) {
            __std_exception_destroy(&_Data);
            __std_exception_copy(&other._Data, &_Data);
        }
        return *this;
    }
    virtual ~exception() noexcept { __std_exception_destroy(&_Data); }

    virtual const char* what() const noexcept {
        return _Data._What != nullptr ? _Data._What : "Unknown exception";
    }

private:
    __std_exception_data _Data;
};

class bad_exception : public exception {
public:
    bad_exception() noexcept : exception("bad exception", 1) {}
};

class bad_alloc : public exception {
public:
    bad_alloc() noexcept : exception("bad allocation", 1) {}

protected:
    explicit bad_alloc(const char* literal) noexcept : exception(literal, 1) {}
};

class bad_array_new_length : public bad_alloc {
public:
    bad_array_new_length() noexcept : bad_alloc("bad array new length") {}
};

}  // namespace std
