// SPDX-License-Identifier: MIT
#include "fuzz/any_library/host.h"

#include <algorithm>
#include <limits>
#include <memory>

#include "adapter/channel_registry.h"
#include "fuzz/any_library/live.h"
#include "fuzz/any_library/world.h"
#include "fuzz/input/fuzz_input.h"
#include "tests/win32/win32_log.h"

namespace any_library {

namespace {

CHost* theHost = nullptr;

constexpr std::array<const char*, 24> keys = {"brightness value range",
                                              "brightness value range min",
                                              "contrast value range max",
                                              "exposure value abs",
                                              "exposure auto switch",
                                              "trigger enable switch",
                                              "trigger polarity switch",
                                              "videoformat",
                                              "videoformats",
                                              "videoformat_0",
                                              "videoformat_7",
                                              "videonorm",
                                              "videonorms",
                                              "inputchannel",
                                              "inputchannels",
                                              "pixelformat",
                                              "framerate",
                                              "propertydialog",
                                              "gain value strings",
                                              "gain one push",
                                              "feature_1",
                                              "  ",
                                              "PixelFormat   ",
                                              "execute_1"};

constexpr std::array<const char*, 24> values = {
    "true",       "false",       "0",     "50",     "-1",         "99999999999",
    "1e400",      "nan",         "RGB24", "raw8",   "mono8",      "other",
    "Y800 (8x4)", "RGB24 (8x4)", "",      "Camera", "2147483647", "-2147483648",
    "3.5e-10",    " 7",          "+",     "0x10",   "BY8 (8x4)",  "\xFF"};

constexpr std::array<std::int32_t, 4> switches = {0, 1, -1, 7};
constexpr std::array<double, 8> fractions = {0.5,
                                             0.0,
                                             1.0,
                                             -1e308,
                                             std::numeric_limits<double>::quiet_NaN(),
                                             1e308,
                                             2.0,
                                             std::numeric_limits<double>::infinity()};

// A registry as it is when the adapter is loaded.
void renewRegistry() {
    ChannelRegistry& registry = channelRegistry();
    std::destroy_at(&registry);
    std::construct_at(&registry);
}

}  // namespace

CHost::CHost() {
    theHost = this;
    win32::reset();
    renewRegistry();
    setPageWork([] { theHost->callInside(); });
    win32::runInside("MessageBoxW", [] { theHost->callInside(); });
    win32::runInside("WaitForSingleObject", [] { theHost->answerWait(); });
    // No event: nothing ever blocks, and the process keeps none.
    win32::runInside("CreateEventA", [] { win32::injectResults("CreateEventA", {0}); });
}

CHost::~CHost() {
    theHost = nullptr;
}

void CHost::run() {
    {
        const CDeviations deviations;
        getChannel();
    }
    while (!answers().isEmpty() && m_stepsLeft > 0) {
        step();
    }
    closeAll();
}

void CHost::closeAll() {
    ChannelRegistry& registry = channelRegistry();
    while (registry.size() > 0) {
        registry.close(&registry.at(0));
    }
}

void CHost::step() {
    if (m_stepsLeft == 0) {
        return;
    }
    --m_stepsLeft;
    const std::uint8_t operation = answers().take();
    m_who = answers().take();
    // Calls inside this one have settings of their own.
    const std::uint8_t outerFlags = m_flags;
    const std::uint8_t outerInside = m_inside;
    m_flags = answers().take();
    m_inside = m_flags / 16;
    {
        const CDeviations deviations;
        callChannel(operation % 20);
    }
    m_flags = outerFlags;
    m_inside = outerInside;
}

void CHost::callInside() {
    if (m_depth == 3) {
        return;
    }
    ++m_depth;
    for (std::uint8_t calls = std::exchange(m_inside, 0); calls > 0; --calls) {
        step();
    }
    --m_depth;
}

CHost::Channel* CHost::chosen() {
    return m_channels.empty() ? nullptr : &m_channels[m_who % m_channels.size()];
}

void* CHost::context() {
    static int stranger = 0;
    if (m_who == 255) {
        return nullptr;
    }
    return m_who == 254 ? &stranger : chosen()->record.context;
}

void CHost::callChannel(std::uint8_t operation) {
    switch (operation) {
        case 0:
            getChannel();
            return;
        case 1:
            deliver(answers().take());
            return;
        case 2:
            world().isPresent = !world().isPresent;
            return;
        case 3:
            takeSize();
            for (Channel& channel : m_channels) {
                channel.isResized = true;
            }
            return;
        default:
            break;
    }
    if (m_channels.empty()) {
        return;
    }
    CFuzzBuffer message;
    char* text = (m_flags & noMessage) != 0 ? nullptr : message.data();
    const VideoChannelRecord record = chosen()->record;
    switch (operation) {
        case 4:
            startAcquisition();
            break;
        case 5:
            guarded([&] { return record.StopAcquisition(text, context()); });
            break;
        case 6:
        case 7:
            waitFrame();
            break;
        case 8:
        case 9:
            copyFrame();
            break;
        case 10:
            getImageInfo();
            break;
        case 11:
            setParameters();
            break;
        case 12:
            nameProperty();
            break;
        case 13:
            guarded([&] { return record.CloseChannel(text, context()); });
            break;
        default:
            callWithText(operation);
            break;
    }
    require(message.isWhole(), "a message is whole");
}

void CHost::getChannel() {
    const auto index = static_cast<std::int8_t>(answers().take());
    auto record = std::make_unique<VideoChannelRecord>();
    VideoChannelRecord* place = (m_flags & noOutput) != 0 ? nullptr : record.get();
    const std::int32_t result = guarded([&] { return GetVideoChannel(nullptr, index, place); });
    win32::clearInjected();
    require(result != HOST_RESULT_SUCCESS || place != nullptr, "no record is no success");
    require(record->size == (result == HOST_RESULT_SUCCESS ? 632U : 0U),
            "a record is filled, or left alone");
    if (result == HOST_RESULT_SUCCESS) {
        require(std::memchr(record->deviceName, 0, 254) != nullptr, "a name is whole");
        require(std::memchr(record->serialText, 0, 256) != nullptr, "a serial text is whole");
        Channel channel{*record, record->maxWidth, record->maxHeight, false, false};
        changeAll(record->context, [&channel](const Channel& known) {
            channel.isRestored = known.isRestored;
            channel.isResized = known.isResized;
        });
        m_channels.push_back(channel);
    }
}

void CHost::setParameters() {
    auto block = std::make_unique<CameraParameterBlock>();
    const auto fraction = [] { return fractions[answers().take() % fractions.size()]; };
    block->exposure = fraction();
    block->contrast = fraction();
    block->brightness = fraction();
    block->triggerEnable = switches[answers().take() % switches.size()];
    block->triggerPolarity = block->triggerEnable / 2;
    block->roiLeft = block->roiTop =
        (m_flags & noText) != 0 ? std::numeric_limits<std::int32_t>::max() : block->triggerEnable;
    block->roiWidth = block->roiHeight = block->roiLeft;
    const CameraParameterBlock* place = (m_flags & noOutput) != 0 ? nullptr : block.get();
    guarded([&] { return chosen()->record.SetCameraParameters(nullptr, context(), place); });
}

void CHost::nameProperty() {
    CFuzzBuffer name;
    const auto index = static_cast<std::int8_t>(answers().take());
    const std::int32_t result = guarded([&] {
        return chosen()->record.GetPropertyName(nullptr, context(), index,
                                                (m_flags & noOutput) != 0 ? nullptr : name.data());
    });
    require(name.isWhole(), "a name is whole");
    if (result == HOST_RESULT_SUCCESS && !name.isUntouched()) {
        std::memcpy(m_key.data(), name.data(), m_key.size());
    }
}

const char* CHost::takeKey(char* place) {
    const std::uint8_t choice = answers().take();
    if ((m_flags & noText) != 0) {
        return nullptr;
    }
    const char* key = choice < 128 ? keys[choice % keys.size()] : m_key.data();
    std::memcpy(place, key, std::strlen(key) + 1);
    return place;
}

void CHost::callWithText(std::uint8_t operation) {
    CFuzzBuffer message;
    CFuzzBuffer output;
    CFuzzBuffer ownKey;
    const VideoChannelRecord record = chosen()->record;
    char* text = (m_flags & noMessage) != 0 ? nullptr : message.data();
    char* place = (m_flags & noOutput) != 0 ? nullptr : output.data();
    const char* key = takeKey((m_flags & keyInMessage) != 0 ? message.data() : ownKey.data());
    const std::uint8_t number = answers().take();
    const auto index = static_cast<std::int8_t>(number);
    const std::int32_t result = guarded([&]() -> std::int32_t {
        switch (operation) {
            case 14:
                return record.ExecuteCommand(text, context(), key);
            case 15: {
                std::uint32_t type = 0;
                return record.GetPropertyType(text, context(), key, &type);
            }
            case 16:
                return record.GetPropertyChoice(text, context(), key, index, place);
            case 17:
                record.GetPropertyAttribute(text, context(), key, number, place);
                [[fallthrough]];
            case 18:
                return record.GetPropertyValue(text, context(), key, place);
            default:
                return record.SetPropertyValue(
                    text, context(), key, number == 255 ? nullptr : values[number % values.size()]);
        }
    });
    require(result != hasThrown || operation != 19, "a set lets nothing out");
    require(message.isWhole(), "a message is whole");
    require(output.isWhole(), "an output is whole");
}

}  // namespace any_library
