// SPDX-License-Identifier: MIT
#include "tests/border/support/host_channel.h"

#include <ostream>

namespace {

// Makes a call with an error buffer, a word and a value buffer of its own.
template <class Call>
Answer answerOf(Call&& call) {
    CHostText errorText;
    CHostText value;
    std::uint32_t word = untouchedWord;
    const std::int32_t result = call(errorText.get(), &word, value.get());
    return {result, word, errorText.text(), value.text()};
}

}  // namespace

void PrintTo(const Answer& answer, std::ostream* stream) {
    *stream << "result " << answer.result << ", word 0x" << std::hex << answer.word << std::dec
            << ", error text \"" << answer.errorText << "\", value \"" << answer.value << '"';
}

CHostChannel::CHostChannel(const CAdapterDll& adapter, std::int32_t index) {
    EXPECT_EQ(adapter.getVideoChannel(index, &m_record), 0) << "camera " << index;
}

Answer CHostChannel::start() const {
    return answerOf([this](char* error, std::uint32_t*, char*) {
        return m_record.StartAcquisition(error, m_record.context);
    });
}

Answer CHostChannel::stop() const {
    return answerOf([this](char* error, std::uint32_t*, char*) {
        return m_record.StopAcquisition(error, m_record.context);
    });
}

Answer CHostChannel::wait() const {
    return answerOf([this](char* error, std::uint32_t* status, char*) {
        return m_record.WaitFrame(error, m_record.context, status);
    });
}

Answer CHostChannel::copy(void* destination) const {
    return answerOf([&](char* error, std::uint32_t* status, char*) {
        return m_record.CopyFrame(error, m_record.context, destination, status);
    });
}

Answer CHostChannel::imageInfo(ImageInfo* image) const {
    return answerOf([&](char* error, std::uint32_t* status, char*) {
        return m_record.GetImageInfo(error, m_record.context, image, status);
    });
}

Answer CHostChannel::get(const char* key) const {
    return answerOf([&](char* error, std::uint32_t*, char* value) {
        return m_record.GetPropertyValue(error, m_record.context, key, value);
    });
}

Answer CHostChannel::set(const char* key, const char* value) const {
    return answerOf([&](char* error, std::uint32_t*, char*) {
        return m_record.SetPropertyValue(error, m_record.context, key, value);
    });
}

Answer CHostChannel::execute(const char* command) const {
    return answerOf([&](char* error, std::uint32_t*, char*) {
        return m_record.ExecuteCommand(error, m_record.context, command);
    });
}

Answer CHostChannel::parameters(const CameraParameterBlock* block) const {
    return answerOf([&](char* error, std::uint32_t*, char*) {
        return m_record.SetCameraParameters(error, m_record.context, block);
    });
}

Answer CHostChannel::name(std::int32_t index) const {
    return answerOf([&](char* error, std::uint32_t*, char* name) {
        return m_record.GetPropertyName(error, m_record.context, index, name);
    });
}

Answer CHostChannel::type(const char* key) const {
    return answerOf([&](char* error, std::uint32_t* type, char*) {
        return m_record.GetPropertyType(error, m_record.context, key, type);
    });
}

Answer CHostChannel::choice(const char* key, std::int32_t index) const {
    return answerOf([&](char* error, std::uint32_t*, char* choice) {
        return m_record.GetPropertyChoice(error, m_record.context, key, index, choice);
    });
}

Answer CHostChannel::attribute(const char* key, std::uint32_t attribute) const {
    return answerOf([&](char* error, std::uint32_t*, char* text) {
        return m_record.GetPropertyAttribute(error, m_record.context, key, attribute, text);
    });
}

Answer CHostChannel::close() const {
    return answerOf([this](char* error, std::uint32_t*, char*) {
        return m_record.CloseChannel(error, m_record.context);
    });
}

bool CHostChannel::waitForFrame() const {
    constexpr int longestPatience = 10;
    for (int i = 0; i < longestPatience; ++i) {
        if (wait() == done()) {
            return true;
        }
    }
    return false;
}
