// SPDX-License-Identifier: MIT
// CExecute, the base of every command, and its two kinds: one-push adjustments
// and the capture library's property dialog.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "properties/feature_binding.h"

// An action that the host runs by key. Host thread.
//
// Returns HOST_RESULT_SUCCESS, or HOST_RESULT_FAILURE with a message (256 bytes,
// or null for none). A failing result code of the capture library is thrown as
// a 32-bit integer. Commands live to the end of the process, so there is no
// virtual destructor.
class CExecute {
public:
    CExecute(const CExecute&) = delete;
    CExecute& operator=(const CExecute&) = delete;

    virtual std::int32_t execute(char* message) = 0;

protected:
    explicit CExecute(std::string_view name) : m_name(name) {}
    ~CExecute() = default;

    std::string m_name;
};

// Pushes the button of an item's one-push element, unless its automatic is on.
class CExecuteOnePush final : public CExecute {
public:
    CExecuteOnePush(const GUID& itemId, std::string_view name, DShowLib::Grabber& grabber);
    std::int32_t execute(char* message) override;

private:
    DShowLib::smart_com<DShowLib::IVCDButtonProperty> m_button;
    DShowLib::smart_com<DShowLib::IVCDSwitchProperty> m_automatic;
};

// Shows the capture library's modal page with all settings of the device, and
// blocks until the user closes it.
class CExecutePropertyDialog final : public CExecute {
public:
    // The grabber is not owned.
    CExecutePropertyDialog(std::string_view name, DShowLib::Grabber& grabber);
    std::int32_t execute(char* message) override;

private:
    DShowLib::Grabber& m_grabber;
};
