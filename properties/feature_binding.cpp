// SPDX-License-Identifier: MIT
#include "properties/feature_binding.h"

#include <memory>
#include <string>

#include "capture/conversions.h"
#include "capture/result_codes.h"
#include "platform/text.h"
#include "velmora/host_blocks.h"

namespace {

// Registry form: braces, upper-case digits, hyphens. Empty when memory is short.
std::wstring identifierText(const GUID& identifier) {
    LPOLESTR text = nullptr;
    if (::StringFromCLSID(identifier, &text) < 0 || text == nullptr) {
        return {};
    }
    const std::unique_ptr<wchar_t, decltype(&::CoTaskMemFree)> owned(text, &::CoTaskMemFree);
    return owned.get();
}

}  // namespace

DShowLib::smart_com<DShowLib::IVCDPropertyItem> findItem(
    const DShowLib::smart_com<DShowLib::IVCDPropertyItems>& items, const GUID& itemId) {
    DShowLib::smart_com<DShowLib::IVCDPropertyItem> item;
    if (items) {
        const CComText text(identifierText(itemId));
        if (items->findItem(text.get(), item.put()) < 0) {
            return {};
        }
    }
    return item;
}

DShowLib::smart_com<DShowLib::IVCDPropertyElement> findElement(
    const DShowLib::smart_com<DShowLib::IVCDPropertyItem>& item, const GUID& elementId) {
    DShowLib::smart_com<DShowLib::IVCDPropertyElement> element;
    if (item) {
        const CComText text(identifierText(elementId));
        if (item->findElement(text.get(), element.put()) < 0) {
            return {};
        }
    }
    return element;
}

bool isOn(DShowLib::IVCDSwitchProperty& property) {
    VARIANT_BOOL state = VARIANT_FALSE;
    throwIfFailed(property.getSwitch(&state));
    return state == VARIANT_TRUE;
}

bool isAutomaticOn(const DShowLib::smart_com<DShowLib::IVCDSwitchProperty>& automatic) {
    return automatic && isOn(*automatic.get());
}

std::int32_t refuseUnavailable(char* message, std::string_view name) {
    writeText(message, 255, name, " property is not available!");
    return HOST_RESULT_FAILURE;
}

std::int32_t refuseAutomatic(char* message, std::string_view name) {
    writeText(message, 255, name, " can not be set, while automatic is enabled. Use \"", name,
              " auto\" property and set to \"false\"!");
    return HOST_RESULT_FAILURE;
}
