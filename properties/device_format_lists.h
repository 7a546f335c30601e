// SPDX-License-Identifier: MIT
// Read-only settings that list the names of the device's video formats, video norms
// and input channels. Lists are fetched afresh at every call.
#pragma once

#include <cstddef>
#include <limits>

#include "properties/property.h"

// Refuses every set with the same message.
class CReadOnlyList : public CProperty {
public:
    std::int32_t setValue(char* message, std::string_view value) final;

protected:
    // The grabber is not owned.
    CReadOnlyList(std::string_view name, DShowLib::Grabber& grabber)
        : CProperty(name), m_grabber(grabber) {}

    DShowLib::Grabber& m_grabber;
};

// All names of one of the device's lists, comma separated. `List` fetches the items; once
// the text holds List::fullAt characters, no further name is added.
template <class List>
class CNameList final : public CReadOnlyList {
public:
    CNameList(std::string_view name, DShowLib::Grabber& grabber) : CReadOnlyList(name, grabber) {}
    std::int32_t getValue(char* message, char* value) override;
};

inline constexpr std::size_t neverFull = std::numeric_limits<std::size_t>::max();

struct VideoFormatList {
    static constexpr std::size_t fullAt = 200;
    static DShowLib::Grabber::tVidFmtListPtr fetch(const DShowLib::Grabber& grabber);
};
struct VideoNormList {
    static constexpr std::size_t fullAt = neverFull;
    static DShowLib::Grabber::tVidNrmListPtr fetch(const DShowLib::Grabber& grabber);
};
struct InputChannelList {
    static constexpr std::size_t fullAt = neverFull;
    static DShowLib::Grabber::tInChnListPtr fetch(const DShowLib::Grabber& grabber);
};

using CPropertyVideoFormats = CNameList<VideoFormatList>;
using CPropertyVideoNorms = CNameList<VideoNormList>;
using CPropertyInputChannels = CNameList<InputChannelList>;

extern template class CNameList<VideoFormatList>;
extern template class CNameList<VideoNormList>;
extern template class CNameList<InputChannelList>;

// The format whose index ends the property's own name, "videoformat_3"; empty past the
// end of the list.
class CPropertyVideoFormatAt final : public CReadOnlyList {
public:
    CPropertyVideoFormatAt(std::string_view name, DShowLib::Grabber& grabber)
        : CReadOnlyList(name, grabber) {}
    std::int32_t getValue(char* message, char* value) override;
};
