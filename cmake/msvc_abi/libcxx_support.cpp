// SPDX-License-Identifier: MIT
// Replaces small compiled parts of libc++ 14: shared ownership, what its headers throw,
// and the end of a program that can not go on.
#include <cstdlib>
#include <exception>
#include <memory>
#include <stdexcept>
#include <variant>

namespace std {

void terminate() noexcept {
    std::abort();
}

const char* bad_variant_access::what() const noexcept {
    return "bad_variant_access";
}

inline namespace __1 {

__shared_count::~__shared_count() {}
__shared_weak_count::~__shared_weak_count() {}

void __shared_weak_count::__release_weak() noexcept {
    if (__libcpp_atomic_refcount_decrement(__shared_weak_owners_) == -1) {
        __on_zero_shared_weak();
    }
}

const void* __shared_weak_count::__get_deleter(const type_info&) const noexcept {
    return nullptr;
}

void __throw_runtime_error(const char* text) {
    throw runtime_error(text);
}

// As its base class: nothing here looks at the code.
void __throw_system_error(int /*code*/, const char* text) {
    throw runtime_error(text);
}

}  // namespace __1
}  // namespace std
