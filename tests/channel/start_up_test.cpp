// SPDX-License-Identifier: MIT
// From the load of the adapter to the first answer of its export.
#include <string>
#include <vector>

#include "adapter/channel_registry.h"
#include "tests/channel/trace_recorder.h"
#include "tests/support/channel_fixture.h"
#include "tests/support/channel_rigs.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint8_t hostByte = 0xA5;

// A host's record with recognisable contents.
struct HostRecord {
    HostRecord() { std::memset(&record, hostByte, sizeof(record)); }
    bool isUntouched() const {
        HostRecord fresh;
        return std::memcmp(&record, &fresh.record, sizeof(record)) == 0;
    }
    VideoChannelRecord record;
};

TEST(Load, StopsComAndStartsOleOnTheLoadingThread) {
    std::vector<std::string> starts;
    for (const win32::Call& call : win32::calls()) {
        starts.push_back(call.name + "(" + call.arguments + ")");
        EXPECT_EQ(call.threadId, GetCurrentThreadId());
    }
    EXPECT_THAT(starts, ElementsAre("CoUninitialize()", "OleInitialize(null)"));
    EXPECT_FALSE(channelRegistry().isInitialised());
    EXPECT_EQ(channelRegistry().size(), 0);
}

class StartUp : public CChannelTest {
protected:
    void SetUp() override {
        CChannelTest::SetUp();
        trace_recorder::clear();
        load(L"C:\\adapter\\velmora_adapter.dll");
        recordAll();
    }

    static void load(const std::wstring& path) {
        win32::setModulePath(path);
        EXPECT_EQ(DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr), TRUE);
    }
    static std::string searchDirectory() {
        win32::reset();
        GetVideoChannel(nullptr, 0, nullptr);
        return win32::callsOf("SetDllDirectoryW").at(0).arguments;
    }
    static std::int32_t channelCount() {
        std::int32_t count = 0;
        HostRecord host;
        while (GetVideoChannel(nullptr, count, &host.record) == 0) {
            ++count;
        }
        return count;
    }
};

TEST_F(StartUp, AsksForTheAdaptersPathOfAtMost260Characters) {
    win32::reset();
    DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr);
    EXPECT_THAT(win32Calls({}), ElementsAre("GetModuleFileNameW(null, 260)"));
}

TEST_F(StartUp, SucceedsForEveryReasonAndLooksForThePathOnProcessAttachAlone) {
    win32::reset();
    EXPECT_EQ(DllMain(nullptr, DLL_THREAD_ATTACH, nullptr), TRUE);
    EXPECT_EQ(DllMain(nullptr, DLL_THREAD_DETACH, nullptr), TRUE);
    EXPECT_EQ(DllMain(nullptr, DLL_PROCESS_DETACH, nullptr), TRUE);
    EXPECT_EQ(DllMain(nullptr, 77, nullptr), TRUE);
    EXPECT_THAT(win32Calls({}), IsEmpty());
}

TEST_F(StartUp, KeepsTheFolderWithItsLastBackslash) {
    load(L"D:\\Imaging Host\\cameras\\velmora_adapter.dll");
    EXPECT_EQ(searchDirectory(), "D:\\Imaging Host\\cameras\\");
}

TEST_F(StartUp, NeverClearsTheFirstCharacterOfAPathWithoutAFolder) {
    load(L"velmora_adapter.dll");
    EXPECT_EQ(searchDirectory(), "v");
}

TEST_F(StartUp, TakesTheAdapterDirectlyInTheRoot) {
    load(L"\\velmora_adapter.dll");
    EXPECT_EQ(searchDirectory(), "\\");
}

TEST_F(StartUp, CutsAPathThatIsTooLongToTheFolderThatFits) {
    load(L"C:\\" + std::wstring(100, L'f') + L"\\" + std::wstring(300, L'g') + L"\\adapter.dll");
    EXPECT_EQ(searchDirectory(), "C:\\" + std::string(100, 'f') + "\\");
}

TEST_F(StartUp, SetsTheDirectoryThenTracesThenLooksForTheLibrary) {
    loadRig(rigs::grey());
    HostRecord host;
    ASSERT_EQ(GetVideoChannel(nullptr, 0, &host.record), 0);
    const auto calls = win32Calls({"SetDllDirectoryW", "FindFirstFileW", "FindClose",
                                   "LoadLibraryW", "MessageBoxW", "FreeLibrary"});
    EXPECT_THAT(calls, ElementsAre("SetDllDirectoryW(C:\\adapter\\)",
                                   "FindFirstFileW(C:\\adapter\\ORV_CAPLB11*.dll)",
                                   ::testing::StartsWith("FindClose("),
                                   "LoadLibraryW(ORV_CAPLB11_x64.dll)"));
    EXPECT_EQ(win32::openSearches(), 0);
    const auto traces = trace_recorder::calls();
    ASSERT_FALSE(traces.empty());
    EXPECT_EQ(traces[0].texts.at(0), "\n*** Starting new Session ***");
    EXPECT_EQ(traces[0].win32Calls, 1U);
    EXPECT_EQ(traces[0].libraryCalls, 0U);
}

TEST_F(StartUp, StartsTheLibraryBeforeItListsTheDevices) {
    loadRig(rigs::grey());
    HostRecord host;
    ASSERT_EQ(GetVideoChannel(nullptr, 0, &host.record), 0);
    const auto calls = library_log::operations();
    ASSERT_GE(calls.size(), 3U);
    EXPECT_EQ(calls[0], "InitLibrary");
    EXPECT_EQ(calls[1], "Grabber::Grabber");
    EXPECT_EQ(calls[2], "Grabber::getAvailableVideoCaptureDevices_");
    EXPECT_EQ(library_log::count("InitLibrary"), 1U);
    EXPECT_EQ(library_log::count("Grabber::getAvailableVideoCaptureDevices_"), 1U);
}

TEST_F(StartUp, IgnoresTheResultOfInitLibrary) {
    loadRig(rigs::grey());
    startLibrary();
    virtualCamerasFailCall("InitLibrary", 1, 1, VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    HostRecord host;
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 0);
}

TEST_F(StartUp, EndsWithOneGrabberPerCameraAndNoItemLeft) {
    loadRig(rigs::grey() + rigs::color());
    HostRecord host;
    ASSERT_EQ(GetVideoChannel(nullptr, 0, &host.record), 0);
    EXPECT_EQ(alive().grabbers, 2U);
    EXPECT_EQ(alive().openDevices, 2U);
    EXPECT_EQ(alive().items, 0U);
}

TEST_F(StartUp, SetsOnlyTheDirectoryOnLaterCalls) {
    loadRig(rigs::grey());
    HostRecord host;
    ASSERT_EQ(GetVideoChannel(nullptr, 0, &host.record), 0);
    recordAll();
    trace_recorder::clear();
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 0);
    EXPECT_EQ(GetVideoChannel(nullptr, 1, &host.record), 1);
    EXPECT_THAT(win32Calls({}),
                ElementsAre("SetDllDirectoryW(C:\\adapter\\)", "SetDllDirectoryW(C:\\adapter\\)"));
    EXPECT_THAT(library_log::lines(), IsEmpty());
    EXPECT_EQ(trace_recorder::calls().size(), 2U);
}

TEST_F(StartUp, GivesTheSameChannelForTheSameIndex) {
    loadRig(rigs::grey() + rigs::color());
    const VideoChannelRecord first = openRecord(1);
    EXPECT_EQ(openRecord(1).context, first.context);
    EXPECT_NE(openRecord(0).context, first.context);
}

TEST_F(StartUp, IgnoresItsFirstArgument) {
    loadRig(rigs::grey());
    HostRecord host;
    int anything = 0;
    EXPECT_EQ(GetVideoChannel(&anything, 0, &host.record), 0);
}

TEST_F(StartUp, ReportsAMissingLibraryOnEveryCallUntilItsFileIsThere) {
    loadRig(rigs::grey());
    win32::setFiles({});
    HostRecord host;
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 1);
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 1);
    EXPECT_TRUE(host.isUntouched());
    EXPECT_THAT(library_log::lines(), IsEmpty());
    const auto boxes = win32::messageBoxes();
    ASSERT_EQ(boxes.size(), 2U);
    for (const auto& box : boxes) {
        EXPECT_EQ(box.owner, nullptr);
        EXPECT_EQ(box.text, "Runtime Libraries not found!");
        EXPECT_EQ(box.caption, "Velmora Adapter");
        EXPECT_EQ(box.type, 0U);
        EXPECT_EQ(box.threadId, GetCurrentThreadId());
    }
    EXPECT_THAT(win32Calls({"FindClose", "LoadLibraryW"}), IsEmpty());

    win32::setFiles({L"C:\\adapter\\ORV_CAPLB11_x64.dll"});
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 0);
    EXPECT_EQ(win32::messageBoxes().size(), 2U);
}

TEST_F(StartUp, ReportsALibraryThatIsThereUnderAnotherNameOnly) {
    loadRig(rigs::grey());
    win32::setFiles({L"C:\\adapter\\ORV_CAPLB11_old.dll"});
    HostRecord host;
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 1);
    EXPECT_TRUE(host.isUntouched());
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
    EXPECT_EQ(win32::openSearches(), 0);
    EXPECT_THAT(library_log::lines(), IsEmpty());
    win32::setFiles({L"C:\\adapter\\ORV_CAPLB11_x64.dll"});
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 0);
}

TEST_F(StartUp, LooksBesideTheAdapterAlone) {
    loadRig(rigs::grey());
    win32::setFiles({L"C:\\elsewhere\\ORV_CAPLB11_x64.dll", L"C:\\adapter\\ORV_CAPLB12_x64.dll"});
    HostRecord host;
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 1);
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
}

TEST_F(StartUp, ListsNoCameraOnceAndForAll) {
    loadRig("");
    HostRecord host;
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 1);
    EXPECT_TRUE(host.isUntouched());
    EXPECT_TRUE(channelRegistry().isInitialised());
    EXPECT_EQ(alive().grabbers, 0U);

    loadRig(rigs::grey());
    recordAll();
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 1);
    EXPECT_THAT(library_log::lines(), IsEmpty());
}

TEST_F(StartUp, TakesAMissingListAsNoCamera) {
    loadRig(rigs::grey());
    virtualCamerasFailCall("Grabber::getAvailableVideoCaptureDevices_", 1, 1,
                           VIRTUAL_CAMERAS_FAIL_FALSE, 0, "");
    HostRecord host;
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 1);
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 1);
    EXPECT_TRUE(channelRegistry().isInitialised());
}

TEST_F(StartUp, TakesAnEmptyListAsNoCamera) {
    loadRig(rigs::grey());
    virtualCamerasFailCall("Grabber::getAvailableVideoCaptureDevices_", 1, 1,
                           VIRTUAL_CAMERAS_FAIL_EMPTY, 0, "");
    EXPECT_EQ(channelCount(), 0);
    EXPECT_TRUE(channelRegistry().isInitialised());
}

TEST_F(StartUp, ReportsACameraThatThrowsATextAndGivesItsIndexToTheNext) {
    loadRig(rigs::camera("Broken", "1", "\"Y800 (8x4)\"",
                         "model = \"SIM Broken 1\"\nopen = \"throw\"") +
            rigs::grey());
    HostRecord host;
    ASSERT_EQ(GetVideoChannel(nullptr, 0, &host.record), 0);
    EXPECT_STREQ(host.record.deviceName, "SIM Mono 23");
    EXPECT_EQ(GetVideoChannel(nullptr, 1, &host.record), 1);
    const auto boxes = win32::messageBoxes();
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].owner, nullptr);
    EXPECT_EQ(boxes[0].text, "Failed to initialize device SIM Broken 1");
    EXPECT_EQ(boxes[0].caption, "Device Error");
    EXPECT_EQ(boxes[0].type, 0x10U);
    EXPECT_EQ(alive().grabbers, 1U);
    EXPECT_EQ(alive().items, 0U);
}

TEST_F(StartUp, GoesOnAfterACameraInTheMiddleThatThrows) {
    loadRig(rigs::grey() + rigs::camera("Broken", "1", "\"Y800 (8x4)\"", "open = \"throw\"") +
            rigs::color());
    EXPECT_STREQ(openRecord(0).deviceName, "SIM Mono 23");
    EXPECT_STREQ(openRecord(1).deviceName, "SIM Color 23");
    EXPECT_EQ(channelCount(), 2);
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
}

TEST_F(StartUp, ListsNothingWhenEveryCameraThrows) {
    loadRig(rigs::camera("One", "1", "\"Y800 (8x4)\"", "open = \"throw\"") +
            rigs::camera("Two", "2", "\"Y800 (8x4)\"", "open = \"throw\""));
    HostRecord host;
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 1);
    EXPECT_EQ(win32::messageBoxes().size(), 2U);
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 1);
    EXPECT_EQ(win32::messageBoxes().size(), 2U);
    EXPECT_TRUE(channelRegistry().isInitialised());
    EXPECT_EQ(alive().grabbers, 0U);
}

TEST_F(StartUp, ShowsAModelNameBeyondAsciiAsItIs) {
    loadRig(rigs::camera("Broken", "1", "\"Y800 (8x4)\"",
                         "model = \"Kam\u00e9ra \u4e2d\"\nopen = \"throw\""));
    EXPECT_EQ(channelCount(), 0);
    ASSERT_EQ(win32::messageBoxes().size(), 1U);
    EXPECT_EQ(win32::messageBoxes()[0].text, "Failed to initialize device Kam\u00e9ra \u4e2d");
}

TEST_F(StartUp, CutsTheReportTo299Characters) {
    loadRig(rigs::camera("Broken", "1", "\"Y800 (8x4)\"",
                         "model = \"" + std::string(400, 'm') + "\"\nopen = \"throw\""));
    EXPECT_EQ(channelCount(), 0);
    ASSERT_EQ(win32::messageBoxes().size(), 1U);
    EXPECT_EQ(win32::messageBoxes()[0].text,
              "Failed to initialize device " + std::string(271, 'm'));
}

TEST_F(StartUp, ReportsATextThrownAnywhereInTheConstruction) {
    loadRig(rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    virtualCamerasFailCall("Grabber::setSinkType", 1, 1, VIRTUAL_CAMERAS_FAIL_THROW, 0, "no");
    EXPECT_EQ(channelCount(), 0);
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
    EXPECT_EQ(alive().grabbers, 0U);
    EXPECT_EQ(alive().sinks, 0U);
}

TEST_F(StartUp, LetsATextOutsideAConstructionPass) {
    loadRig(rigs::grey());
    virtualCamerasFailCall("Grabber::getAvailableVideoCaptureDevices_", 1, 1,
                           VIRTUAL_CAMERAS_FAIL_THROW, 0, "The library is busy.");
    HostRecord host;
    try {
        GetVideoChannel(nullptr, 0, &host.record);
        FAIL() << "nothing was thrown";
    } catch (char* text) {
        EXPECT_STREQ(text, "The library is busy.");
    }
    EXPECT_TRUE(host.isUntouched());
    EXPECT_TRUE(win32::messageBoxes().empty());
    EXPECT_FALSE(channelRegistry().isInitialised());
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 0);
}

TEST_F(StartUp, LetsAFailingResultCodePassAndUndoesTheAttempt) {
    loadRig(rigs::color() + rigs::grey(rigs::range("Contrast", 0, 255, 51)));
    virtualCamerasFailCall("IVCDRangeProperty::getRangeMax", 1, 1, VIRTUAL_CAMERAS_FAIL_CODE,
                           static_cast<std::int32_t>(0x80070005), "");
    HostRecord host;
    try {
        GetVideoChannel(nullptr, 0, &host.record);
        FAIL() << "nothing was thrown";
    } catch (std::int32_t code) {
        EXPECT_EQ(code, static_cast<std::int32_t>(0x80070005));
    }
    EXPECT_TRUE(host.isUntouched());
    EXPECT_TRUE(win32::messageBoxes().empty());
    EXPECT_FALSE(channelRegistry().isInitialised());
    EXPECT_EQ(channelRegistry().size(), 0);
    EXPECT_EQ(alive().grabbers, 0U);
    EXPECT_EQ(alive().openDevices, 0U);
    EXPECT_EQ(alive().items, 0U);

    recordAll();
    ASSERT_EQ(GetVideoChannel(nullptr, 1, &host.record), 0);
    EXPECT_EQ(library_log::count("InitLibrary"), 0U) << "once per process";
    EXPECT_EQ(library_log::count("Grabber::openDev"), 2U);
    EXPECT_EQ(channelCount(), 2);
    EXPECT_DOUBLE_EQ(host.record.contrast, 0.2);
}

TEST_F(StartUp, StartsTheLibraryAgainWhenAHostShutItDownAfterAFailedAttempt) {
    loadRig(rigs::grey());
    virtualCamerasFailCall("Grabber::getAvailableVideoCaptureDevices_", 1, 1,
                           VIRTUAL_CAMERAS_FAIL_THROW, 0, "busy");
    EXPECT_ANY_THROW(GetVideoChannel(nullptr, 0, nullptr));
    channelRegistry().close(nullptr);
    HostRecord host;
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 0);
    EXPECT_EQ(library_log::operations({"InitLibrary", "ExitLibrary"}),
              (std::vector<std::string>{"InitLibrary", "ExitLibrary", "InitLibrary"}));
}

TEST_F(StartUp, FailsForAnIndexFromTheNumberOfChannelsOn) {
    loadRig(rigs::grey() + rigs::color());
    HostRecord host;
    EXPECT_EQ(GetVideoChannel(nullptr, 2, &host.record), 1);
    EXPECT_EQ(GetVideoChannel(nullptr, 3, &host.record), 1);
    EXPECT_EQ(GetVideoChannel(nullptr, 2147483647, &host.record), 1);
    EXPECT_TRUE(host.isUntouched());
    EXPECT_EQ(GetVideoChannel(nullptr, 1, &host.record), 0);
}

TEST_F(StartUp, ThrowsOutOfRangeForANegativeIndex) {
    loadRig(rigs::grey());
    HostRecord host;
    for (const std::int32_t index : {-1, -2147483647 - 1}) {
        try {
            GetVideoChannel(nullptr, index, &host.record);
            FAIL() << "nothing was thrown";
        } catch (const std::out_of_range& failure) {
            EXPECT_STREQ(failure.what(), "invalid vector<T> subscript");
        }
    }
    EXPECT_TRUE(host.isUntouched());
    EXPECT_EQ(GetVideoChannel(nullptr, 0, &host.record), 0);
}

TEST_F(StartUp, ThrowsOutOfRangeForANegativeIndexOfAnEmptyList) {
    loadRig("");
    EXPECT_THROW(GetVideoChannel(nullptr, -1, nullptr), std::out_of_range);
}

TEST_F(StartUp, FailsForAMissingRecord) {
    loadRig(rigs::grey());
    EXPECT_EQ(GetVideoChannel(nullptr, 0, nullptr), 1);
    EXPECT_EQ(channelCount(), 1);
}

TEST_F(StartUp, WritesNoDebuggerTextOnceTheTablesAreBuilt) {
    loadRig(rigs::grey());
    openRecord();
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("\n\nAll Properties:\n"));
    win32::reset();
    openRecord();
    EXPECT_THAT(win32::debuggerTexts(), IsEmpty());
}

}  // namespace
