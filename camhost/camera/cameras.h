// SPDX-License-Identifier: MIT
// All cameras of an adapter, opened by asking for index after index and closed
// at the end; and finding the one that the user means. Portable.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "camhost/base/json.h"
#include "camhost/camera/record_channel.h"

namespace camhost {

// Index, serial (absent where there is none) and name.
CJson identityJson(const CRecordChannel& camera);

class CCameras {
public:
    // None, of no adapter.
    CCameras() = default;
    explicit CCameras(GetVideoChannelEntry getVideoChannel);
    CCameras(const CCameras&) = delete;
    CCameras& operator=(const CCameras&) = delete;
    ~CCameras();

    const std::vector<std::unique_ptr<CRecordChannel>>& all() const { return m_channels; }
    GetVideoChannelEntry entry() const { return m_getVideoChannel; }

    // By "#index", serial, whole name, or a part of exactly one name, without
    // regard to case; empty when there is only one camera. Throws a Failure
    // that lists the candidates.
    CRecordChannel& select(const std::string& wanted) const;

    // Frees the adapter's channels, all of them; throws the first Failure of it.
    void close();

private:
    GetVideoChannelEntry m_getVideoChannel = nullptr;
    std::vector<std::unique_ptr<CRecordChannel>> m_channels;
};

}  // namespace camhost
