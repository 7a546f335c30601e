// SPDX-License-Identifier: MIT
// Any text as the description of a rig: it is refused with a message, or its cameras
// can be listed, opened and looked through.
#include "capture/library/grabber.h"
#include "capture/library/library.h"
#include "capture/video_formats.h"
#include "fuzz/input/fuzz_input.h"
#include "virtual_cameras/control.h"

namespace {

std::uint32_t countDevices() {
    const DShowLib::Grabber grabber;
    const auto devices = grabber.getAvailableVideoCaptureDevices_();
    return devices ? devices->size() : 0;
}

void lookThrough(const DShowLib::VideoCaptureDeviceItem& device) {
    DShowLib::Grabber grabber;
    if (!grabber.openDev(device)) {
        return;
    }
    if (const auto formats = availableVideoFormats(grabber); formats) {
        for (const auto& format : *formats) {
            grabber.setVideoFormat(format);
            grabber.getAvailableFPS_(format);
        }
    }
    grabber.getAvailableVideoNorms_();
    grabber.getAvailableInputChannels_();
    if (const auto items = grabber.getAvailableVCDProperties(); items) {
        LONG count = 0;
        items->getCount(&count);
        for (LONG i = 1; i <= count; ++i) {
            DShowLib::smart_com<DShowLib::IVCDPropertyItem> item;
            items->getItem(i, item.put());
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool isStarted = DShowLib::InitLibrary();
    require(isStarted, "the library starts");
    virtualCamerasReset();
    virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_STEPPED);
    const std::uint32_t before = countDevices();

    CFuzzInput input(data, size);
    CFuzzBuffer message;
    const std::string toml = input.takeRest();
    const std::int32_t result =
        virtualCamerasLoadRig(toml.c_str(), message.data(), CFuzzBuffer::size);
    require(result == 0 || result == 1, "a rig is taken or refused");
    if (result == 1) {
        require(!message.text().empty(), "a refusal says why");
        require(countDevices() == before, "and leaves the rig as it was");
        return 0;
    }
    const DShowLib::Grabber grabber;
    const auto devices = grabber.getAvailableVideoCaptureDevices_();
    for (std::uint32_t i = 0; devices && i < devices->size(); ++i) {
        try {
            lookThrough((*devices)[i]);
        } catch (const char*) {
            // Rigs may ask for cameras that throw.
        }
    }
    return 0;
}
