// SPDX-License-Identifier: MIT
// Replaces the compiled string functions of libc++ 14.
#include <charconv>
#include <string>

#define INSTANTIATE(...) template __VA_ARGS__;

namespace std {
inline namespace __1 {

_LIBCPP_STRING_V1_EXTERN_TEMPLATE_LIST(INSTANTIATE, char)
_LIBCPP_STRING_V1_EXTERN_TEMPLATE_LIST(INSTANTIATE, wchar_t)
template string operator+<char, char_traits<char>, allocator<char>>(const char*, const string&);

namespace __itoa {

char* __u64toa(uint64_t value, char* buffer) noexcept {
    char digits[20];
    int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value != 0);
    while (count > 0) {
        *buffer++ = digits[--count];
    }
    return buffer;
}

char* __u32toa(uint32_t value, char* buffer) noexcept {
    return __u64toa(value, buffer);
}

}  // namespace __itoa

namespace {

template <class Integer>
string decimal(Integer value) {
    char text[21];
    return string(text, to_chars(text, text + sizeof(text), value).ptr);
}

}  // namespace

string to_string(int value) {
    return decimal(value);
}
string to_string(unsigned value) {
    return decimal(value);
}
string to_string(long value) {
    return decimal(value);
}
string to_string(unsigned long value) {
    return decimal(value);
}
string to_string(long long value) {
    return decimal(value);
}
string to_string(unsigned long long value) {
    return decimal(value);
}

}  // namespace __1
}  // namespace std
