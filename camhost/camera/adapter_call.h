// SPDX-License-Identifier: MIT
// Calls into an adapter: what it throws (result codes, texts, standard
// exceptions, and anything else) comes out as an AdapterFailure that names the entry point.
// Portable.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "camhost/base/failure.h"

namespace camhost {

// One call failed inside the adapter; the others may well work.
struct AdapterFailure : Failure {};

// "0x80004005"
std::string resultCodeText(std::uint32_t code);

[[noreturn]] void failOnCode(const char* entry, std::uint32_t code);
[[noreturn]] void failOnText(const char* entry, const char* text);
[[noreturn]] void failOnOther(const char* entry);

template <class Call>
std::int32_t callAdapter(const char* entry, Call call) {
    try {
        return call();
    } catch (int code) {
        failOnCode(entry, static_cast<std::uint32_t>(code));
    } catch (long code) {
        failOnCode(entry, static_cast<std::uint32_t>(code));
    } catch (const std::exception& error) {
        failOnText(entry, error.what());
    } catch (const char* text) {
        failOnText(entry, text);
    } catch (...) {
        failOnOther(entry);
    }
}

}  // namespace camhost
