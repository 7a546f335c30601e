// SPDX-License-Identifier: MIT
#include "properties/device_format_lists.h"

#include <algorithm>

#include "capture/conversions.h"
#include "capture/video_formats.h"
#include "platform/text.h"
#include "properties/property_keys.h"
#include "properties/value_text.h"
#include "velmora/host_blocks.h"

std::int32_t CReadOnlyList::setValue(char* message, std::string_view /*value*/) {
    writeText(message, 255, "This is a read only property.");
    return HOST_RESULT_FAILURE;
}

template <class List>
std::int32_t CNameList<List>::getValue(char* /*message*/, char* value) {
    CBoundedText names(value, 255);
    for (const auto& item : toStandard(List::fetch(m_grabber))) {
        if (names.size() >= List::fullAt) {
            continue;
        }
        if (names.size() != 0) {
            names.append(",");
        }
        names.append(item.c_str());
    }
    return HOST_RESULT_SUCCESS;
}

DShowLib::Grabber::tVidFmtListPtr VideoFormatList::fetch(const DShowLib::Grabber& grabber) {
    return availableVideoFormats(grabber);
}

DShowLib::Grabber::tVidNrmListPtr VideoNormList::fetch(const DShowLib::Grabber& grabber) {
    return grabber.getAvailableVideoNorms_();
}

DShowLib::Grabber::tInChnListPtr InputChannelList::fetch(const DShowLib::Grabber& grabber) {
    return grabber.getAvailableInputChannels_();
}

template class CNameList<VideoFormatList>;
template class CNameList<VideoNormList>;
template class CNameList<InputChannelList>;

std::int32_t CPropertyVideoFormatAt::getValue(char* /*message*/, char* value) {
    const std::string_view name = m_name;
    const std::int32_t index =
        parseInteger(name.substr(std::min(name.size(), videoFormatPrefix.size())));
    CBoundedText text(value, 255);
    std::int32_t position = 0;
    for (const auto& format : toStandard(availableVideoFormats(m_grabber))) {
        if (position == index) {
            text.append(format.c_str());
        }
        ++position;
    }
    return HOST_RESULT_SUCCESS;
}
