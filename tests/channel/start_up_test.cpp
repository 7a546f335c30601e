// SPDX-License-Identifier: MIT
// From the load of the adapter to the first answer of its export.
#include <string>
#include <vector>

#include "tests/channel/start_up_fixture.h"

namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

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

class StartUp : public CStartUpTest {};

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
    int theProcessEnds = 0;
    EXPECT_EQ(DllMain(nullptr, DLL_PROCESS_DETACH, &theProcessEnds), TRUE);
    EXPECT_EQ(DllMain(nullptr, 77, nullptr), TRUE);
    EXPECT_THAT(win32Calls({}), ElementsAre("letLastCallLeave()"));
}

TEST_F(StartUp, LetsTheLastCallLeaveWhereTheProcessGoesOn) {
    win32::reset();
    for (const DWORD reason : {DLL_PROCESS_ATTACH, DLL_THREAD_ATTACH, DLL_THREAD_DETACH}) {
        DllMain(nullptr, reason, nullptr);
    }
    int theProcessEnds = 0;
    DllMain(nullptr, DLL_PROCESS_DETACH, &theProcessEnds);
    EXPECT_THAT(win32::callsOf("letLastCallLeave"), IsEmpty());
    DllMain(nullptr, DLL_PROCESS_DETACH, nullptr);
    EXPECT_EQ(win32::callsOf("letLastCallLeave").size(), 1U);
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

TEST_F(StartUp, MakesNoFolderOfAPathThatIsTooLong) {
    const std::wstring ancestor = L"C:\\" + std::wstring(100, L'f') + L"\\";
    load(ancestor + std::wstring(300, L'g') + L"\\adapter.dll");
    win32::setFiles({ancestor + L"ORV_CAPLB11_x64.dll", L"ORV_CAPLB11_x64.dll"});
    EXPECT_EQ(ask(), 1);
    EXPECT_TRUE(isRecordUntouched());
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
    EXPECT_THAT(win32Calls({"SetDllDirectoryW", "FindFirstFileW", "LoadLibraryExW"}), IsEmpty());
}

TEST_F(StartUp, TakesTheLongestPathThatFits) {
    const std::string folder = "C:\\" + std::string(252, 'f') + "\\";
    load(std::wstring(folder.begin(), folder.end()) + L"a.d");
    EXPECT_EQ(searchDirectory(), folder);
    load(std::wstring(folder.begin(), folder.end()) + L"a.dl");
    recordAll();
    GetVideoChannel(nullptr, 0, nullptr);
    EXPECT_THAT(win32Calls({"SetDllDirectoryW"}), IsEmpty());
}

TEST_F(StartUp, SetsTheDirectoryThenTracesThenLooksForTheLibrary) {
    ASSERT_EQ(ask(), 0);
    const auto calls = win32Calls({"SetDllDirectoryW", "FindFirstFileW", "FindClose",
                                   "LoadLibraryExW", "MessageBoxW", "FreeLibrary"});
    EXPECT_THAT(calls, ElementsAre("SetDllDirectoryW(C:\\adapter\\)",
                                   "FindFirstFileW(C:\\adapter\\ORV_CAPLB11*.dll)",
                                   ::testing::StartsWith("FindClose("),
                                   "LoadLibraryExW(C:\\adapter\\ORV_CAPLB11_x64.dll, null, 8)"));
    EXPECT_EQ(win32::openSearches(), 0);
    const auto traces = trace_recorder::calls();
    ASSERT_FALSE(traces.empty());
    EXPECT_EQ(traces[0].texts.at(0), "\n*** Starting new Session ***");
    EXPECT_EQ(traces[0].win32Calls, 1U);
    EXPECT_EQ(traces[0].libraryCalls, 0U);
}

TEST_F(StartUp, StartsTheLibraryBeforeItListsTheDevices) {
    ASSERT_EQ(ask(), 0);
    const auto calls = library_log::operations();
    ASSERT_GE(calls.size(), 3U);
    EXPECT_EQ(calls[0], "InitLibrary");
    EXPECT_EQ(calls[1], "Grabber::Grabber");
    EXPECT_EQ(calls[2], "Grabber::getAvailableVideoCaptureDevices_");
    EXPECT_EQ(library_log::count("InitLibrary"), 1U);
    EXPECT_EQ(library_log::count("Grabber::getAvailableVideoCaptureDevices_"), 1U);
}

TEST_F(StartUp, IgnoresTheResultOfInitLibrary) {
    startLibrary();
    refuseCall("InitLibrary");
    EXPECT_EQ(ask(), 0);
}

TEST_F(StartUp, EndsWithOneGrabberPerCameraAndNoItemLeft) {
    loadRig(rigs::grey() + rigs::color());
    ASSERT_EQ(ask(), 0);
    EXPECT_EQ(alive().grabbers, 2U);
    EXPECT_EQ(alive().openDevices, 2U);
    EXPECT_EQ(alive().items, 0U);
}

TEST_F(StartUp, SetsOnlyTheDirectoryOnLaterCalls) {
    ASSERT_EQ(ask(), 0);
    recordAll();
    trace_recorder::clear();
    EXPECT_EQ(ask(), 0);
    EXPECT_EQ(ask(1), 1);
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
    int anything = 0;
    EXPECT_EQ(GetVideoChannel(&anything, 0, &m_record), 0);
}

TEST_F(StartUp, ReportsAMissingLibraryOnEveryCallUntilItsFileIsThere) {
    win32::setFiles({});
    EXPECT_EQ(ask(), 1);
    EXPECT_EQ(ask(), 1);
    EXPECT_TRUE(isRecordUntouched());
    EXPECT_THAT(library_log::lines(), IsEmpty());
    const auto missing = AllOf(isBox("Runtime Libraries not found!", "Velmora Adapter", 0),
                               Field(&win32::MessageBox::threadId, GetCurrentThreadId()));
    EXPECT_THAT(win32::messageBoxes(), ElementsAre(missing, missing));
    EXPECT_THAT(win32Calls({"FindClose", "LoadLibraryExW"}), IsEmpty());

    win32::setFiles({L"C:\\adapter\\ORV_CAPLB11_x64.dll"});
    EXPECT_EQ(ask(), 0);
    EXPECT_EQ(win32::messageBoxes().size(), 2U);
}

TEST_F(StartUp, ReportsALibraryThatIsThereUnderAnotherNameOnly) {
    win32::setFiles({L"C:\\adapter\\ORV_CAPLB11_old.dll"});
    EXPECT_EQ(ask(), 1);
    EXPECT_TRUE(isRecordUntouched());
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
    EXPECT_EQ(win32::openSearches(), 0);
    EXPECT_THAT(library_log::lines(), IsEmpty());
    win32::setFiles({L"C:\\adapter\\ORV_CAPLB11_x64.dll"});
    EXPECT_EQ(ask(), 0);
}

TEST_F(StartUp, LooksBesideTheAdapterAlone) {
    win32::setFiles({L"C:\\elsewhere\\ORV_CAPLB11_x64.dll", L"C:\\adapter\\ORV_CAPLB12_x64.dll"});
    EXPECT_EQ(ask(), 1);
    EXPECT_EQ(win32::messageBoxes().size(), 1U);
}

TEST_F(StartUp, ListsNoCameraOnceAndForAll) {
    loadRig("");
    EXPECT_EQ(ask(), 1);
    EXPECT_TRUE(isRecordUntouched());
    EXPECT_TRUE(channelRegistry().isInitialised());
    EXPECT_EQ(alive().grabbers, 0U);

    loadRig(rigs::grey());
    recordAll();
    EXPECT_EQ(ask(), 1);
    EXPECT_THAT(library_log::lines(), IsEmpty());
}

TEST_F(StartUp, TakesAMissingListAsNoCamera) {
    refuseCall("Grabber::getAvailableVideoCaptureDevices_");
    EXPECT_EQ(ask(), 1);
    EXPECT_EQ(ask(), 1);
    EXPECT_TRUE(channelRegistry().isInitialised());
}

TEST_F(StartUp, TakesAnEmptyListAsNoCamera) {
    emptyCall("Grabber::getAvailableVideoCaptureDevices_");
    EXPECT_EQ(channelCount(), 0);
    EXPECT_TRUE(channelRegistry().isInitialised());
}

TEST_F(StartUp, FailsForAnIndexFromTheNumberOfChannelsOn) {
    loadRig(rigs::grey() + rigs::color());
    EXPECT_EQ(ask(2), 1);
    EXPECT_EQ(ask(3), 1);
    EXPECT_EQ(ask(2147483647), 1);
    EXPECT_TRUE(isRecordUntouched());
    EXPECT_EQ(ask(1), 0);
}

TEST_F(StartUp, ThrowsOutOfRangeForANegativeIndex) {
    for (const std::int32_t index : {-1, -2147483647 - 1}) {
        EXPECT_EQ(outOfRangeText([&] { ask(index); }), "invalid vector<T> subscript");
    }
    EXPECT_TRUE(isRecordUntouched());
    EXPECT_EQ(ask(), 0);
}

TEST_F(StartUp, ThrowsOutOfRangeForANegativeIndexOfAnEmptyList) {
    loadRig("");
    EXPECT_THROW(GetVideoChannel(nullptr, -1, nullptr), std::out_of_range);
}

TEST_F(StartUp, FailsForAMissingRecord) {
    EXPECT_EQ(GetVideoChannel(nullptr, 0, nullptr), 1);
    EXPECT_EQ(channelCount(), 1);
}

TEST_F(StartUp, WritesNoDebuggerTextOnceTheTablesAreBuilt) {
    openRecord();
    EXPECT_THAT(win32::debuggerTexts(), ElementsAre("\n\nAll Properties:\n"));
    win32::reset();
    openRecord();
    EXPECT_THAT(win32::debuggerTexts(), IsEmpty());
}

}  // namespace
