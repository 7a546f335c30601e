// SPDX-License-Identifier: MIT
#include <utility>
#include <vector>

#include "capture/conversions.h"
#include "capture/live_pause.h"
#include "platform/checked_access.h"
#include "platform/text.h"
#include "properties/property.h"
#include "properties/value_text.h"
#include "velmora/host_blocks.h"

CPropertyFrameRate::CPropertyFrameRate(std::string_view name, DShowLib::Grabber& grabber)
    : CProperty(name), m_grabber(grabber) {
    constexpr double fastest = 10000.0;
    m_grabber.setFPS(fastest);
}

std::int32_t CPropertyFrameRate::getValue(char* /*message*/, char* value) {
    writeText(value, 20, m_grabber.getFPS());
    return HOST_RESULT_SUCCESS;
}

std::int32_t CPropertyFrameRate::setValue(char* message, std::string_view value) {
    const auto list = m_grabber.getAvailableFPS_(m_grabber.getVideoFormat());
    if (!list) {
        writeText(message, 250, "No frame rates available!");
        return HOST_RESULT_FAILURE;
    }
    const std::vector<double> rates = toStandard(list);
    const double rate = parseFloat(value);
    double low = cutToHundredths(checkedAt(rates, 0));
    double high = cutToHundredths(checkedAt(rates, static_cast<std::int64_t>(rates.size()) - 1));
    if (low > high) {
        std::swap(low, high);
    }
    if (!(low <= rate && rate <= high)) {
        writeText(message, 250, "The frame rate must be between ", low, " and ", high, ".");
        return HOST_RESULT_FAILURE;
    }
    whileLiveIsPaused(m_grabber, [this, rate] { m_grabber.setFPS(rate); });
    return HOST_RESULT_SUCCESS;
}
