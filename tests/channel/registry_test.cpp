// SPDX-License-Identifier: MIT
// The list of cameras, and what closing one does.
#include "adapter/channel_registry.h"
#include "tests/support/channel_fixture.h"
#include "tests/support/host_calls.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class Registry : public CWithGreyCamera<CChannelTest> {};

TEST_F(Registry, ListsChannelsInTheOrderOfTheLibrary) {
    loadRig(rigs::grey() + rigs::color() + rigs::raw());
    ChannelRegistry registry;
    EXPECT_FALSE(registry.isInitialised());
    registry.enumerate();
    EXPECT_TRUE(registry.isInitialised());
    ASSERT_EQ(registry.size(), 3);
    EXPECT_STREQ(registry.at(0).deviceName(), "SIM Mono 23");
    EXPECT_STREQ(registry.at(1).deviceName(), "SIM Color 23");
    EXPECT_STREQ(registry.at(2).deviceName(), "SIM Raw 23");
    while (registry.size() > 0) {
        registry.close(&registry.at(0));
    }
}

TEST_F(Registry, FindsItsChannelsAndNothingElse) {
    ChannelRegistry registry;
    registry.enumerate();
    CVideoChannel* channel = &registry.at(0);
    int stranger = 0;
    ASSERT_EQ(registry.enter(channel), channel);
    registry.leave(*channel);
    EXPECT_EQ(registry.enter(nullptr), nullptr);
    EXPECT_EQ(registry.enter(&stranger), nullptr);
    registry.close(channel);
    EXPECT_EQ(registry.enter(channel), nullptr);
}

TEST_F(Registry, DoesNotEndALibraryThatItNeverStarted) {
    ChannelRegistry registry;
    recordAll();
    registry.close(nullptr);
    EXPECT_THAT(library_log::lines(), IsEmpty());
}

TEST_F(Registry, ThrowsOutOfRangeForAPositionWithoutAChannel) {
    const ChannelRegistry registry;
    for (const std::int32_t position : {-1, 0, 1}) {
        EXPECT_EQ(outOfRangeText([&] { registry.at(position); }), "invalid vector<T> subscript");
    }
}

TEST_F(Registry, LeavesChannelsThatAreStillListedOpenAtItsEnd) {
    CVideoChannel* channel = nullptr;
    {
        ChannelRegistry registry;
        registry.enumerate();
        channel = &registry.at(0);
        recordAll();
    }
    EXPECT_THAT(library_log::lines(), IsEmpty());
    EXPECT_EQ(alive().openDevices, 1U);
    delete channel;
}

TEST_F(Registry, ClosesTheGrabberBeforeTheLibraryShutsDown) {
    ChannelRegistry registry;
    registry.enumerate();
    recordAll();
    registry.close(&registry.at(0));
    EXPECT_THAT(library_log::operations({"Grabber::~Grabber", "ExitLibrary"}),
                ElementsAre("Grabber::~Grabber", "ExitLibrary"));
    EXPECT_TRUE(registry.isInitialised());
}

class Closing : public CWithGreyCamera<CChannelTest> {};

TEST_F(Closing, MovesLaterChannelsToTheFront) {
    loadRig(rigs::grey() + rigs::color());
    const CRecordHost first(openRecord(0));
    const CRecordHost second(openRecord(1));
    recordAll();
    EXPECT_EQ(first.close(), accepted());
    EXPECT_EQ(library_log::count("ExitLibrary"), 0U);
    EXPECT_EQ(alive().grabbers, 1U);
    EXPECT_EQ(openRecord(0).context, second.context());
    VideoChannelRecord record{};
    EXPECT_EQ(GetVideoChannel(nullptr, 1, &record), 1);
}

TEST_F(Closing, KeepsEarlierChannelsWhereTheyAre) {
    loadRig(rigs::grey() + rigs::color() + rigs::raw());
    const CRecordHost first(openRecord(0));
    const CRecordHost second(openRecord(1));
    const CRecordHost third(openRecord(2));
    EXPECT_EQ(second.close(), accepted());
    EXPECT_EQ(openRecord(0).context, first.context());
    EXPECT_EQ(openRecord(1).context, third.context());
}

TEST_F(Closing, ShutsTheLibraryDownAfterTheLastChannelForGood) {
    loadRig(rigs::grey() + rigs::color());
    const CRecordHost first(openRecord(0));
    const CRecordHost second(openRecord(1));
    EXPECT_EQ(second.close(), accepted());
    recordAll();
    EXPECT_EQ(first.close(), accepted());
    EXPECT_EQ(library_log::count("ExitLibrary"), 1U);
    EXPECT_EQ(library_log::operations().back(), "ExitLibrary");
    EXPECT_EQ(alive().grabbers, 0U);

    recordAll();
    VideoChannelRecord record{};
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &record), 1);
    EXPECT_EQ(GetVideoChannel(nullptr, 1, &record), 1);
    EXPECT_EQ(record.context, nullptr);
    EXPECT_THAT(library_log::lines(), IsEmpty());
    EXPECT_THAT(win32Calls({"FindFirstFileW", "MessageBoxW"}), IsEmpty());
}

TEST_F(Closing, ShutsTheLibraryDownAgainForANullContextOnAnEmptyList) {
    const CRecordHost host(openRecord());
    EXPECT_EQ(host.close(), accepted());
    recordAll();
    EXPECT_EQ(host.with(nullptr).close(), accepted());
    EXPECT_THAT(library_log::lines(), ElementsAre("ExitLibrary()"));
}

TEST_F(Closing, DoesNothingForANullContextWhileChannelsAreListed) {
    const CRecordHost host(openRecord());
    recordAll();
    EXPECT_EQ(host.with(nullptr).close(), accepted());
    EXPECT_THAT(library_log::lines(), IsEmpty());
    EXPECT_EQ(alive().grabbers, 1U);
}

TEST_F(Closing, DestroysNothingForAContextThatIsNotListed) {
    loadRig(rigs::grey() + rigs::color());
    const CRecordHost first(openRecord(0));
    EXPECT_EQ(first.close(), accepted());
    recordAll();
    CHostMemory stranger(4096);
    EXPECT_EQ(first.close(), accepted());
    EXPECT_EQ(first.with(stranger.data()).close(), accepted());
    EXPECT_THAT(library_log::lines(), IsEmpty());
    EXPECT_TRUE(stranger.isUntouched());
    EXPECT_EQ(alive().grabbers, 1U);
}

TEST_F(Closing, ShutsTheLibraryDownAgainForAnUnlistedContextOnAnEmptyList) {
    const CRecordHost host(openRecord());
    EXPECT_EQ(host.close(), accepted());
    recordAll();
    EXPECT_EQ(host.close(), accepted());
    EXPECT_THAT(library_log::lines(), ElementsAre("ExitLibrary()"));
}

TEST_F(Closing, TakesNoTextBuffer) {
    const CRecordHost host(openRecord());
    EXPECT_EQ(host.record().CloseChannel(nullptr, host.context()), 0);
    EXPECT_EQ(alive().grabbers, 0U);
}

TEST_F(Closing, HoldsTheAdaptersModuleWhileAnyCameraIsOpen) {
    loadRig(rigs::grey() + rigs::color());
    recordAll();
    const CRecordHost first(openRecord(0));
    const CRecordHost second(openRecord(1));
    EXPECT_THAT(win32Calls({"holdOwnModule", "releaseOwnModule"}), ElementsAre("holdOwnModule()"));
    EXPECT_EQ(first.close(), accepted());
    EXPECT_THAT(win32Calls({"releaseOwnModule"}), IsEmpty());
    EXPECT_EQ(second.close(), accepted());
    EXPECT_THAT(win32Calls({"releaseOwnModule"}), ElementsAre("releaseOwnModule()"));
    EXPECT_EQ(library_log::operations().back(), "ExitLibrary");
}

TEST_F(Closing, HoldsTheAdaptersModuleWhileALaterCameraHasItsBox) {
    loadRig(rigs::grey() + rigs::color());
    throwFromCall("Grabber::openDev", "busy", 2);
    recordAll();
    const CRecordHost host(openRecord(0));
    EXPECT_THAT(win32Calls({"holdOwnModule", "MessageBoxW"}),
                ElementsAre("holdOwnModule()", StartsWith("MessageBoxW(")));
}

TEST_F(Closing, GivesTheAdaptersModuleBackWhenAListingThrows) {
    loadRig(rigs::grey() + rigs::color());
    virtualCamerasFailCall("Grabber::openDev", 2, 1, VIRTUAL_CAMERAS_FAIL_THROW_CODE, 5, "");
    recordAll();
    EXPECT_THROW(GetVideoChannel(nullptr, 0, nullptr), int);
    EXPECT_THAT(win32Calls({"holdOwnModule", "releaseOwnModule"}),
                ElementsAre("holdOwnModule()", "releaseOwnModule()"));
}

TEST_F(Closing, GivesTheAdaptersModuleBackWhenTheLibraryIsShutDown) {
    const CRecordHost host(openRecord());
    recordAll();
    std::string before;
    win32::runInside("releaseOwnModule", [&] { before = library_log::operations().back(); });
    EXPECT_EQ(host.close(), accepted());
    win32::runInside("releaseOwnModule", {});
    EXPECT_EQ(before, "ExitLibrary");
}

TEST_F(Closing, HoldsNoModuleWithoutACamera) {
    chooseRig("empty");
    recordAll();
    EXPECT_EQ(GetVideoChannel(nullptr, 0, nullptr), 1);
    EXPECT_THAT(win32Calls({"holdOwnModule"}), IsEmpty());
}

}  // namespace
