// SPDX-License-Identifier: MIT
// Another camera library's settings by text: an integer and a floating-point number,
// found by name and read or written as text. A set changes the value every time.
#pragma once

#include <memory>
#include <string>

namespace bench {

class CSettingsPeer {
public:
    CSettingsPeer() = default;
    CSettingsPeer(const CSettingsPeer&) = delete;
    CSettingsPeer& operator=(const CSettingsPeer&) = delete;
    virtual ~CSettingsPeer() = default;

    virtual void getInteger() = 0;
    virtual void setInteger() = 0;
    virtual void getFloat() = 0;
    virtual void setFloat() = 0;
};

// Aravis with its own fake camera; nothing, and the reason, where it cannot be had.
std::unique_ptr<CSettingsPeer> makeAravisSettings(std::string& whyNot);

}  // namespace bench
