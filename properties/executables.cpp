// SPDX-License-Identifier: MIT
#include "properties/executables.h"

#include "capture/no_device.h"
#include "capture/result_codes.h"
#include "platform/text.h"
#include "velmora/host_blocks.h"

CExecuteOnePush::CExecuteOnePush(const GUID& itemId, std::string_view name,
                                 DShowLib::Grabber& grabber)
    : CExecute(name) {
    const auto item = findItem(grabber.getAvailableVCDProperties(), itemId);
    m_automatic = bindInterface<DShowLib::IVCDSwitchProperty>(item, DShowLib::VCDElement_Auto);
    m_button = bindInterface<DShowLib::IVCDButtonProperty>(item, DShowLib::VCDElement_OnePush);
}

std::int32_t CExecuteOnePush::execute(char* message) {
    if (!m_button) {
        return refuseUnavailable(message, m_name);
    }
    if (isAutomaticOn(m_automatic)) {
        return refuseAutomatic(message, m_name);
    }
    throwIfFailed(m_button->push());
    return HOST_RESULT_SUCCESS;
}

CExecutePropertyDialog::CExecutePropertyDialog(std::string_view name, DShowLib::Grabber& grabber)
    : CExecute(name), m_grabber(grabber) {}

std::int32_t CExecutePropertyDialog::execute(char* message) {
    if (!m_grabber.isDevValid()) {
        writeText(message, 255, noDeviceText);
        return HOST_RESULT_FAILURE;
    }
    m_grabber.showVCDPropertyPage(nullptr, DShowLib::dstringa(""));
    return HOST_RESULT_SUCCESS;
}
