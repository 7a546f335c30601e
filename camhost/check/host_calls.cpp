// SPDX-License-Identifier: MIT
#include "camhost/check/host_calls.h"

#include <algorithm>

#include "camhost/base/texts.h"
#include "camhost/camera/adapter_call.h"
#include "camhost/check/claim.h"

namespace camhost {

namespace {

constexpr std::uint32_t unwrittenNumber = 0xA5A5A5A5U;
constexpr const char* replacement = "\xEF\xBF\xBD";

std::optional<std::uint32_t> wordOf(std::uint32_t word) {
    return word == unwrittenNumber ? std::nullopt : std::optional(word);
}

// A text that may have been cut ends anywhere, so only the others are judged.
bool isBadUtf8(const std::string& text) {
    constexpr std::size_t mayBeCut = 250;
    return text.size() < mayBeCut && text.find(replacement) == text.npos &&
           forTerminal(text).find(replacement) != std::string::npos;
}

std::string called(const char* entry, const std::string& about) {
    return about.empty() ? entry : std::string(entry) + " of \"" + about.substr(0, 40) + "\"";
}

}  // namespace

std::string told(const Answer& answer) {
    std::string text = "answered " + std::to_string(answer.result);
    if (answer.message) {
        text += ", text \"" + *answer.message + "\"";
    }
    if (answer.text) {
        text += ", \"" + *answer.text + "\"";
    }
    if (answer.word) {
        text += ", word " + std::to_string(*answer.word);
    }
    return text;
}

// A text buffer that begins with an empty text or, where every byte counts, with none.
class CHostCalls::CText {
public:
    enum class Begin { Empty, Unset };
    explicit CText(Begin begin) : m_bytes(HOST_TEXT_BYTES), m_begin(begin) {
        if (begin == Begin::Empty) {
            m_bytes.data()[0] = 0;
        }
    }
    char* data() { return reinterpret_cast<char*>(m_bytes.data()); }
    bool isWritten() const {
        if (m_begin == Begin::Unset) {
            return !m_bytes.isUntouched();
        }
        CGuardedBytes rest = m_bytes;
        const bool first = rest.data()[0] != 0;
        rest.data()[0] = CGuardedBytes::usualFill;
        return first || !rest.isUntouched();
    }
    bool isIntact() const { return m_bytes.isIntact() && (!isWritten() || end() != limit()); }
    std::string text() const { return {m_bytes.data(), end()}; }

private:
    const std::uint8_t* limit() const { return m_bytes.data() + HOST_TEXT_BYTES; }
    const std::uint8_t* end() const { return std::find(m_bytes.data(), limit(), std::uint8_t{0}); }
    CGuardedBytes m_bytes;
    Begin m_begin;
};

CHostCalls CHostCalls::withContext(void* context) const {
    CHostCalls other = *this;
    other.m_record.context = context;
    return other;
}

CHostCalls CHostCalls::withoutMessages() const {
    CHostCalls other = *this;
    other.m_messages = false;
    return other;
}

std::optional<std::string> CHostCalls::read(const CText& text, Breach breach,
                                            const std::string& about) {
    if (!text.isIntact()) {
        m_breaches->note(breach, about + " wrote outside of the 256 bytes, or no terminator");
    }
    if (!text.isWritten()) {
        return std::nullopt;
    }
    std::string found = text.text();
    if (isBadUtf8(found)) {
        m_breaches->note(Breach::NotUtf8, about + " wrote \"" + found + "\"");
    }
    return found;
}

template <class Entry, class... Arguments>
Answer CHostCalls::call(const char* name, const std::string& about, Entry entry,
                        Arguments... arguments) {
    if (entry == nullptr) {
        throw NotSupported{std::string("the record has no ") + name};
    }
    CText message(CText::Begin::Empty);
    Answer answer;
    answer.result = callAdapter(name, [&] {
        return entry(m_messages ? message.data() : nullptr, m_record.context, arguments...);
    });
    answer.message = read(message, Breach::Message, called(name, about));
    if (answer.result != HOST_RESULT_SUCCESS && answer.result != HOST_RESULT_FAILURE) {
        m_breaches->note(Breach::Result, called(name, about) + " " + told(answer));
    }
    return answer;
}

Answer CHostCalls::setParameters(const CameraParameterBlock& block) {
    return call("SetCameraParameters", "", m_record.SetCameraParameters, &block);
}

Answer CHostCalls::imageInfo(ImageInfo& image) {
    std::uint32_t status = unwrittenNumber;
    Answer answer = call("GetImageInfo", "", m_record.GetImageInfo, &image, &status);
    answer.word = wordOf(status);
    return answer;
}

Answer CHostCalls::waitFrame() {
    std::uint32_t status = unwrittenNumber;
    Answer answer = call("WaitFrame", "", m_record.WaitFrame, &status);
    answer.word = wordOf(status);
    return answer;
}

Answer CHostCalls::copyFrame(void* destination) {
    std::uint32_t status = unwrittenNumber;
    Answer answer = call("CopyFrame", "", m_record.CopyFrame, destination, &status);
    answer.word = wordOf(status);
    return answer;
}

Answer CHostCalls::start() {
    return call("StartAcquisition", "", m_record.StartAcquisition);
}

Answer CHostCalls::stop() {
    return call("StopAcquisition", "", m_record.StopAcquisition);
}

Answer CHostCalls::execute(const std::string& command) {
    return call("ExecuteCommand", command, m_record.ExecuteCommand, command.c_str());
}

Answer CHostCalls::get(const std::string& key) {
    CText value(CText::Begin::Unset);
    Answer answer =
        call("GetPropertyValue", key, m_record.GetPropertyValue, key.c_str(), value.data());
    answer.text = read(value, Breach::Value, called("GetPropertyValue", key));
    if (answer.isDone() && answer.message) {
        m_breaches->note(Breach::NeedlessMessage,
                         called("GetPropertyValue", key) + " " + told(answer));
    }
    return answer;
}

Answer CHostCalls::set(const std::string& key, const std::string& value) {
    return call("SetPropertyValue", key, m_record.SetPropertyValue, key.c_str(), value.c_str());
}

Answer CHostCalls::name(std::int32_t index) {
    CText name(CText::Begin::Unset);
    Answer answer = call("GetPropertyName", "", m_record.GetPropertyName, index, name.data());
    answer.text = read(name, Breach::Name, called("GetPropertyName", std::to_string(index)));
    return answer;
}

Answer CHostCalls::type(const std::string& key) {
    std::uint32_t type = unwrittenNumber;
    Answer answer = call("GetPropertyType", key, m_record.GetPropertyType, key.c_str(), &type);
    answer.word = wordOf(type);
    return answer;
}

Answer CHostCalls::choice(const std::string& key, std::int32_t index) {
    CText choice(CText::Begin::Unset);
    Answer answer = call("GetPropertyChoice", key, m_record.GetPropertyChoice, key.c_str(), index,
                         choice.data());
    answer.text = read(choice, Breach::Choice, called("GetPropertyChoice", key));
    return answer;
}

Answer CHostCalls::attribute(const std::string& key, std::uint32_t number) {
    CText text(CText::Begin::Unset);
    Answer answer = call("GetPropertyAttribute", key, m_record.GetPropertyAttribute, key.c_str(),
                         number, text.data());
    answer.text = read(text, Breach::Attribute, called("GetPropertyAttribute", key));
    return answer;
}

Answer CHostCalls::close() {
    return call("CloseChannel", "", m_record.CloseChannel);
}

}  // namespace camhost
