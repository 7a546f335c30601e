// SPDX-License-Identifier: MIT
// What stays outside the adapter: exceptions of others, and operations of the
// library that it does not need.
#include <new>

#include "adapter/channel_registry.h"
#include "tests/channel/promised_calls.h"
#include "tests/support/one_channel.h"

namespace {

using ::testing::IsEmpty;

class Border : public CGreyCamera {};

TEST_F(Border, LetsAFailureOfMemoryPassOutOfTheStartUp) {
    loadRig(rigs::grey() + rigs::color());
    // The first text that the library hands out has no memory.
    win32::injectResults("CoTaskMemAlloc", {1, 1, 1, 1, 1, 1, 1, 1, 0});
    EXPECT_THROW(GetVideoChannel(nullptr, 0, nullptr), std::bad_alloc);
    win32::clearInjected();
    EXPECT_THAT(win32::messageBoxes(), IsEmpty());
    EXPECT_FALSE(channelRegistry().isInitialised());
    EXPECT_EQ(alive().grabbers, 0U);
    openRecord(1);
}

TEST_F(Border, KeepsEveryBufferOfTheHostWithinItsBytes) {
    const std::string longText(1000, 'k');
    open(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    EXPECT_EQ(get(longText), refused("Unknown property \"" + std::string(237, 'k')));
    EXPECT_EQ(set(longText, longText), refused("Unknown property \"" + std::string(237, 'k')));
    EXPECT_EQ(execute(longText), refused("Unknown command \"" + std::string(238, 'k')));
    EXPECT_EQ(choice(longText.c_str(), 0), refused("Feature " + std::string(247, 'k')));
}

TEST_F(Border, LooksUpWithoutAddingToTheTables) {
    open(rigs::grey(rigs::exposureWithValueSwitch));
    const auto before = names();
    CameraParameterBlock block{};
    block.triggerEnable = 1;
    EXPECT_EQ(parameters(block), accepted());
    EXPECT_EQ(set("nothing", "1").result, 1);
    EXPECT_EQ(get("nothing at all").result, 1);
    EXPECT_EQ(execute("no command").result, 1);
    EXPECT_EQ(start(), accepted());
    unplug();
    plug();
    EXPECT_EQ(waitInVain(), noFrame());
    EXPECT_EQ(names(), before);
}

// One long session of a host with everything that a camera can offer.
void runSession(const CRecordHost& host) {
    CHostMemory frame(1024);
    ImageInfo image{};
    CameraParameterBlock block{};
    block.triggerEnable = 1;
    for (const std::string& key : host.names()) {
        host.type(key.c_str());
        host.choice(key.c_str(), 0);
        host.attribute(key.c_str(), 1);
        const Answer answer = host.get(key);
        if (answer.result == 0) {
            host.set(key, answer.value);
        }
    }
    host.execute("propertydialog");
    host.execute("focus one push");
    host.imageInfo(&image);
    host.start();
    host.parameters(block);
    win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
    host.wait();
    host.copy(frame);
    host.stop();
    host.stop();
    refuseCall("Grabber::startLive", 1, 1, "no");
    host.start();
}

TEST_F(Border, CallsNothingOfTheLibraryThatItDoesNotNeed) {
    loadRig(rigs::camera("SIM Full", "1", "\"BY8 (8x4)\", \"Y800 (8x4)\"",
                         "framerates = [15.0, 30.0]\nchannels = [\"Composite\"]\n" +
                             rigs::range("Contrast", 0, 255, 51) + std::string(rigs::exposure) +
                             std::string(rigs::trigger) +
                             "[[camera.item]]\nname = \"Focus\"\n\"One Push\".button = true\n" +
                             "[[camera.item]]\nname = \"Mode\"\nValue.strings = { choices = "
                             "[\"A\", \"B\"] }\n"));
    recordAll();
    const CRecordHost host(openRecord());
    runSession(host);
    virtualCamerasUnplug("1");
    virtualCamerasPlug("1");
    win32::injectResults("WaitForSingleObject", {WAIT_TIMEOUT});
    host.wait();
    virtualCamerasDeliverFrame("1");
    host.close();

    EXPECT_THAT(callsBeyondThosePromised(), IsEmpty());
    EXPECT_GT(library_log::operations().size(), 200U) << "the session was cut short";
}

}  // namespace
