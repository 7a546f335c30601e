// SPDX-License-Identifier: MIT
// What the claims of a check work on: one camera, its neighbours, and the running claim's
// findings. Portable.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "camhost/base/system.h"
#include "camhost/camera/cameras.h"
#include "camhost/check/claim.h"
#include "camhost/check/host_calls.h"
#include "camhost/check/saved_settings.h"

namespace camhost {

// Ends the walk through a list that has no end of its own.
inline constexpr std::int32_t longestList = 10000;

inline constexpr const char* pixelFormatKey = "pixelformat";

enum class Said { Anything, Nothing, Something };

// What a call has to answer; what is left out may be anything.
struct Wanted {
    std::int32_t result = HOST_RESULT_SUCCESS;
    Said said = Said::Anything;
    std::optional<std::uint32_t> word{};
    std::optional<std::string> text{};
};

struct ListedNames {
    std::vector<std::string> names;
    std::optional<Answer> end;  // nothing when there was none
};

// Waits up to five times.
bool frameComes(CHostCalls& host);

class CCheck {
public:
    CCheck(CSystem& system, const CCameras& cameras, const CRecordChannel& camera);

    // The running claim fails unless this holds.
    void expect(bool holds, const std::string& otherwise);
    void expectAnswer(const Answer& answer, const Wanted& wanted, const std::string& about = {});
    std::vector<std::string> takeReasons();

    CSystem& system() { return m_system; }
    GetVideoChannelEntry getVideoChannel() const { return m_getVideoChannel; }
    CBreaches& breaches() { return m_breaches; }
    CHostCalls& host() { return m_host; }
    // Of the cameras in the list, and which of them is the one under check.
    std::vector<CHostCalls>& all() { return m_all; }
    std::size_t place() const { return m_place; }
    CHostCalls& neighbour();  // throws NotSupported without one

    // The list of names as it came when first asked for.
    const ListedNames& listedNames();
    // The full list, hidden names included; shorter where that list has no end.
    const std::vector<std::string>& keys();
    bool hasKey(const std::string& key);
    // Nothing where it can not be read.
    std::optional<std::string> value(const std::string& key);
    // Throws NotSupported where it is not told, or has a size of which there can be no frame.
    ImageInfo picture();

    // Starts it, running free; needLive throws NotSupported where that failed.
    Answer goLive();
    const Answer& startAnswer() const { return m_start; }
    void needLive() const;
    void goStopped();
    // Switches a trigger off, which would keep frames from coming.
    void runFree();

    // Notes the settings, at the first call, or throws them away.
    void saveSettings();
    void putSettingsBack();
    std::vector<std::string> lostSettings();

    // At the first call.
    void closeCamera();
    const Answer& closeAnswer() const { return m_close; }
    bool isClosed() const { return m_closed; }

private:
    CSystem& m_system;
    GetVideoChannelEntry m_getVideoChannel;
    CBreaches m_breaches;
    std::vector<CHostCalls> m_all;
    std::size_t m_place = 0;
    CHostCalls m_host;
    std::vector<std::string> m_reasons;
    std::optional<ListedNames> m_listedNames;
    std::optional<std::vector<std::string>> m_keys;
    std::optional<CSavedSettings> m_saved;
    Answer m_start;
    Answer m_close;
    bool m_closed = false;
};

// How groups of claims enter and leave live video.
void enterLive(CCheck& check);
void leaveStopped(CCheck& check);

}  // namespace camhost
