// SPDX-License-Identifier: MIT
// A host of the adapter's own C++ ABI: what passes through the adapter arrives by its
// type. Usage: exceptions_host FOLDER CLAIM, with both DLLs in the folder; returns 0
// when the claim holds.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/windows.h"
#include "velmora/video_channel_record.h"
#include "virtual_cameras/control.h"

namespace {

constexpr std::int32_t failure = -2147467259;  // 0x80004005

int failures = 0;

void expectEqual(std::string_view found, std::string_view expected) {
    if (found != expected) {
        std::printf("expected '%.*s', found '%.*s'\n", static_cast<int>(expected.size()),
                    expected.data(), static_cast<int>(found.size()), found.data());
        ++failures;
    }
}

void expectEqual(std::int32_t found, std::int32_t expected) {
    expectEqual(std::to_string(found), std::to_string(expected));
}

// The type and value of what `call` throws.
template <class Call>
std::string thrownBy(Call&& call) {
    try {
        call();
    } catch (char* text) {
        return std::string("text ") + text;
    } catch (std::int32_t number) {
        return "number " + std::to_string(number);
    } catch (const std::out_of_range& raised) {
        return std::string("out of range ") + raised.what();
    } catch (const std::exception& raised) {
        return std::string("another ") + raised.what();
    }
    return "nothing";
}

class CHost {
public:
    explicit CHost(const std::string& folder)
        : m_library(::LoadLibraryA((folder + "\\ORV_CAPLB11_x64.dll").c_str())),
          m_adapter(::LoadLibraryA((folder + "\\velmora_adapter.dll").c_str())) {
        find(getVideoChannel, m_adapter, "GetVideoChannel");
        find(m_failCall, m_library, "virtualCamerasFailCall");
    }

    bool isComplete() const noexcept { return getVideoChannel != nullptr && m_failCall != nullptr; }

    void failNextWithCode(const char* operation) const {
        m_failCall(operation, 1, 1, VIRTUAL_CAMERAS_FAIL_CODE, failure, "");
    }
    void failNextWithText(const char* operation, const char* text) const {
        m_failCall(operation, 1, 1, VIRTUAL_CAMERAS_FAIL_THROW, 0, text);
    }

    // The first camera; listed on the first call.
    const VideoChannelRecord& camera() {
        expectEqual(getVideoChannel(nullptr, 0, &record), 0);
        return record;
    }

    GetVideoChannelEntry getVideoChannel = nullptr;
    VideoChannelRecord record{};

private:
    template <class Function>
    static void find(Function& place, HMODULE module, const char* name) {
        const FARPROC found = module != nullptr ? ::GetProcAddress(module, name) : nullptr;
        std::memcpy(&place, &found, sizeof(place));
    }

    HMODULE m_library;
    HMODULE m_adapter;
    decltype(&virtualCamerasFailCall) m_failCall = nullptr;
};

void negativeIndexIsOutOfRange(CHost& host) {
    host.camera();
    for (const std::int32_t index : {-1, -2147483647 - 1}) {
        VideoChannelRecord record{};
        expectEqual(thrownBy([&] { host.getVideoChannel(nullptr, index, &record); }),
                    "out of range invalid vector<T> subscript");
        expectEqual(record.context == nullptr, true);
    }
    host.camera();
}

void negativeChoiceIsOutOfRange(CHost& host) {
    const VideoChannelRecord& camera = host.camera();
    char value[256] = "";
    expectEqual(thrownBy([&] {
                    camera.GetPropertyChoice(nullptr, camera.context, "videoformat", -1, value);
                }),
                "out of range invalid vector<T> subscript");
    expectEqual(camera.GetPropertyChoice(nullptr, camera.context, "videoformat", 0, value), 0);
}

void failingCodeLeavesAGetAsANumber(CHost& host) {
    const VideoChannelRecord& camera = host.camera();
    char value[256] = "";
    const auto get = [&] {
        return camera.GetPropertyValue(nullptr, camera.context, "gain value range", value);
    };
    host.failNextWithCode("IVCDRangeProperty::getValue");
    expectEqual(thrownBy(get), "number -2147467259");
    expectEqual(get(), 0);
}

void failingCodeLeavesTheParameterBlockAsANumber(CHost& host) {
    const VideoChannelRecord& camera = host.camera();
    const CameraParameterBlock block{};
    host.failNextWithCode("IVCDRangeProperty::getRangeMin");
    expectEqual(thrownBy([&] { camera.SetCameraParameters(nullptr, camera.context, &block); }),
                "number -2147467259");
}

void failingCodeLeavesTheListingAsANumber(CHost& host) {
    VideoChannelRecord record{};
    host.failNextWithCode("IVCDPropertyItems::getCount");
    expectEqual(thrownBy([&] { host.getVideoChannel(nullptr, 0, &record); }), "number -2147467259");
    expectEqual(record.context == nullptr, true);
    host.camera();
}

void textOfTheLibraryLeavesTheListing(CHost& host) {
    VideoChannelRecord record{};
    host.failNextWithText("Grabber::getAvailableVideoCaptureDevices_", "No bus.");
    expectEqual(thrownBy([&] { host.getVideoChannel(nullptr, 0, &record); }), "text No bus.");
    host.camera();
}

void textOfTheLibraryLeavesAGet(CHost& host) {
    const VideoChannelRecord& camera = host.camera();
    char value[256] = "";
    const auto get = [&] {
        return camera.GetPropertyValue(nullptr, camera.context, "videoformat", value);
    };
    host.failNextWithText("Grabber::getVideoFormat", "No format.");
    expectEqual(thrownBy(get), "text No format.");
    expectEqual(get(), 0);
}

void textOfTheLibraryLeavesEveryOtherCall(CHost& host) {
    const VideoChannelRecord& camera = host.camera();
    std::uint32_t status = 0;
    ImageInfo image{};
    const auto start = [&] { return camera.StartAcquisition(nullptr, camera.context); };
    const auto stop = [&] { return camera.StopAcquisition(nullptr, camera.context); };
    host.failNextWithText("Grabber::startLive", "The cable is loose.");
    expectEqual(thrownBy(start), "text The cable is loose.");
    expectEqual(start(), 0);
    host.failNextWithText("Grabber::isDevValid", "One.");
    expectEqual(thrownBy([&] { camera.WaitFrame(nullptr, camera.context, &status); }), "text One.");
    host.failNextWithText("Grabber::isDevValid", "Two.");
    expectEqual(thrownBy([&] { camera.GetImageInfo(nullptr, camera.context, &image, &status); }),
                "text Two.");
    host.failNextWithText("Grabber::stopLive", "Three.");
    expectEqual(thrownBy(stop), "text Three.");
    expectEqual(stop(), 0);
}

struct Claim {
    std::string_view name;
    void (*prove)(CHost& host);
};

constexpr Claim claims[] = {
    {"NegativeIndexIsOutOfRange", negativeIndexIsOutOfRange},
    {"NegativeChoiceIsOutOfRange", negativeChoiceIsOutOfRange},
    {"FailingCodeLeavesAGetAsANumber", failingCodeLeavesAGetAsANumber},
    {"FailingCodeLeavesTheParameterBlockAsANumber", failingCodeLeavesTheParameterBlockAsANumber},
    {"FailingCodeLeavesTheListingAsANumber", failingCodeLeavesTheListingAsANumber},
    {"TextOfTheLibraryLeavesTheListing", textOfTheLibraryLeavesTheListing},
    {"TextOfTheLibraryLeavesAGet", textOfTheLibraryLeavesAGet},
    {"TextOfTheLibraryLeavesEveryOtherCall", textOfTheLibraryLeavesEveryOtherCall},
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::printf("usage: exceptions_host FOLDER CLAIM\n");
        return 2;
    }
    CHost host(argv[1]);
    if (!host.isComplete()) {
        std::printf("%s lacks one of the DLLs\n", argv[1]);
        return 2;
    }
    for (const Claim& claim : claims) {
        if (claim.name == argv[2]) {
            claim.prove(host);
            return failures == 0 ? 0 : 1;
        }
    }
    std::printf("%s is no claim\n", argv[2]);
    return 2;
}
