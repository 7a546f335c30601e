// SPDX-License-Identifier: MIT
#include "tests/border/support/com_state.h"

#include <ostream>

#include "platform/windows.h"

namespace {

Apartment apartmentOfThread() {
    APTTYPE type = APTTYPE_CURRENT;
    APTTYPEQUALIFIER qualifier = APTTYPEQUALIFIER_NONE;
    // A thread without COM is told of the multithreaded apartment of others.
    if (::CoGetApartmentType(&type, &qualifier) != S_OK ||
        qualifier == APTTYPEQUALIFIER_IMPLICIT_MTA) {
        return Apartment::none;
    }
    return type == APTTYPE_MTA ? Apartment::multi : Apartment::single;
}

std::int32_t leaveAll() {
    std::int32_t count = 0;
    while (apartmentOfThread() != Apartment::none) {
        ::CoUninitialize();
        ++count;
    }
    return count;
}

}  // namespace

ComState comState() {
    const Apartment apartment = apartmentOfThread();
    const std::int32_t count = leaveAll();
    const DWORD kind =
        apartment == Apartment::multi ? COINIT_MULTITHREADED : COINIT_APARTMENTTHREADED;
    for (std::int32_t i = 0; i < count; ++i) {
        ::CoInitializeEx(nullptr, kind);
    }
    return {apartment, count};
}

void endCom() {
    leaveAll();
}

void PrintTo(const ComState& state, std::ostream* stream) {
    constexpr const char* names[] = {"none", "single", "multi"};
    *stream << names[static_cast<int>(state.apartment)] << " x " << state.count;
}
