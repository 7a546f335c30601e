// SPDX-License-Identifier: MIT
// The guard for one stretch of COM on the calling thread.
#pragma once

#include "platform/windows.h"

// Which results of the start are balanced by a stop.
enum class ComBalance {
    onlyFirst,       // S_OK alone: a thread that had COM already keeps the extra count
    firstAndNested,  // S_OK and S_FALSE
};

// Starts COM in the multithreaded apartment, and stops it again at the end of
// the scope where the balance asks for it.
class CComApartment {
public:
    explicit CComApartment(ComBalance balance) noexcept
        : m_result(::CoInitializeEx(nullptr, COINIT_MULTITHREADED)), m_balance(balance) {}
    CComApartment(const CComApartment&) = delete;
    CComApartment& operator=(const CComApartment&) = delete;
    ~CComApartment() {
        if (stopsAtEnd()) {
            ::CoUninitialize();
        }
    }

    bool stopsAtEnd() const noexcept {
        return m_result == S_OK || (m_result == S_FALSE && m_balance == ComBalance::firstAndNested);
    }

private:
    HRESULT m_result;
    ComBalance m_balance;
};
