// SPDX-License-Identifier: MIT
#include "camhost/check/check.h"

#include <algorithm>
#include <utility>

namespace camhost {

bool frameComes(CHostCalls& host) {
    constexpr int waits = 5;
    for (int i = 0; i < waits; ++i) {
        const Answer answer = host.waitFrame();
        if (answer.isDone() && answer.word == std::uint32_t{HOST_STATUS_DONE}) {
            return true;
        }
    }
    return false;
}

CCheck::CCheck(CSystem& system, const CCameras& cameras, const CRecordChannel& camera)
    : m_system(system),
      m_getVideoChannel(cameras.entry()),
      m_place(static_cast<std::size_t>(camera.index())),
      m_host(camera.record(), m_breaches) {
    for (const auto& each : cameras.all()) {
        m_all.emplace_back(each->record(), m_breaches);
    }
}

void CCheck::expect(bool holds, const std::string& otherwise) {
    constexpr std::size_t most = 5;
    if (!holds && m_reasons.size() < most) {
        m_reasons.push_back(otherwise);
    }
}

void CCheck::expectAnswer(const Answer& answer, const Wanted& wanted, const std::string& about) {
    const std::string told = (about.empty() ? "" : about + " ") + camhost::told(answer);
    expect(answer.result == wanted.result, told + "; expected " + std::to_string(wanted.result));
    if (wanted.word) {
        expect(answer.word == wanted.word,
               told + "; expected the word " + std::to_string(*wanted.word));
    }
    if (wanted.text) {
        expect(answer.text == wanted.text, told + "; expected \"" + *wanted.text + "\"");
    }
    if (wanted.said == Said::Nothing) {
        expect(!answer.message, told + "; expected no text");
    } else if (wanted.said == Said::Something) {
        expect(answer.message && !answer.message->empty(), told + "; expected a text");
    }
}

std::vector<std::string> CCheck::takeReasons() {
    return std::exchange(m_reasons, {});
}

CHostCalls& CCheck::neighbour() {
    if (m_all.size() < 2) {
        throw NotSupported{"there is one camera only"};
    }
    return m_all[m_place == 0 ? 1 : 0];
}

const ListedNames& CCheck::listedNames() {
    if (!m_listedNames) {
        m_listedNames.emplace();
        for (std::int32_t index = 0; index < longestList; ++index) {
            const Answer answer = m_host.name(index);
            if (!answer.isDone()) {
                m_listedNames->end = answer;
                break;
            }
            m_listedNames->names.push_back(answer.text.value_or(""));
        }
    }
    return *m_listedNames;
}

const std::vector<std::string>& CCheck::keys() {
    if (!m_keys) {
        m_keys.emplace();
        for (std::int32_t number = 1; number <= longestList; ++number) {
            const Answer answer = m_host.get("feature_" + std::to_string(number));
            if (!answer.isDone() || !answer.text || answer.text->empty()) {
                break;
            }
            // A list that has no end begins anew, or repeats its last name.
            if (std::find(m_keys->begin(), m_keys->end(), *answer.text) != m_keys->end()) {
                break;
            }
            m_keys->push_back(*answer.text);
        }
    }
    return *m_keys;
}

bool CCheck::hasKey(const std::string& key) {
    return std::find(keys().begin(), keys().end(), key) != keys().end();
}

std::optional<std::string> CCheck::value(const std::string& key) {
    const Answer answer = m_host.get(key);
    return answer.isDone() ? answer.text : std::nullopt;
}

ImageInfo CCheck::picture() {
    constexpr std::int64_t mostPixels = std::int64_t{1} << 28U;
    ImageInfo image{};
    if (const Answer answer = m_host.imageInfo(image); !answer.isDone()) {
        throw NotSupported{"GetImageInfo " + told(answer)};
    }
    if (image.width <= 0 || image.height <= 0 ||
        std::int64_t{image.width} * image.height > mostPixels) {
        throw NotSupported{"there is no frame of " + std::to_string(image.width) + "x" +
                           std::to_string(image.height)};
    }
    return image;
}

Answer CCheck::goLive() {
    runFree();
    m_start = m_host.start();
    return m_start;
}

void CCheck::needLive() const {
    if (!m_start.isDone()) {
        throw NotSupported{"StartAcquisition " + told(m_start)};
    }
}

void CCheck::goStopped() {
    if (!m_closed) {
        m_host.stop();
    }
}

void CCheck::runFree() {
    constexpr const char* trigger = "trigger enable switch";
    saveSettings();
    if (value(trigger) == "true") {
        m_host.set(trigger, "false");
    }
}

void CCheck::closeCamera() {
    if (!m_closed) {
        m_closed = true;
        m_close = m_host.close();
    }
}

void CCheck::saveSettings() {
    if (!m_saved) {
        m_saved.emplace(m_host, keys());
    }
}

void CCheck::putSettingsBack() {
    if (m_saved && !m_closed) {
        m_saved->putBack(m_host);
    }
}

std::vector<std::string> CCheck::lostSettings() {
    saveSettings();
    putSettingsBack();
    return m_saved->differences(m_host);
}

void enterLive(CCheck& check) {
    check.goLive();
}

void leaveStopped(CCheck& check) {
    check.goStopped();
    check.putSettingsBack();
}

}  // namespace camhost
