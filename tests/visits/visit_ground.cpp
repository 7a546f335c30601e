// SPDX-License-Identifier: MIT
#include "tests/visits/visit_ground.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <numeric>
#include <stdexcept>
#include <string_view>
#include <thread>

#include "adapter/channel_registry.h"
#include "capture/library/library.h"
#include "tests/support/library_log.h"
#include "tests/visits/host_visit.h"
#include "tests/win32/win32_log.h"
#include "virtual_cameras/control.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);

namespace visits {

namespace {

std::int64_t threads() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return std::distance(tasks, std::filesystem::directory_iterator());
}

// A thread that has been joined stays in the system's list for a moment. The deadline is
// reached only where one is left over.
std::int64_t threadsSince(std::int64_t before) {
    constexpr std::chrono::seconds deadline{5};
    const auto end = std::chrono::steady_clock::now() + deadline;
    std::int64_t now = threads();
    while (now > before && std::chrono::steady_clock::now() < end) {
        std::this_thread::yield();
        now = threads();
    }
    return std::max<std::int64_t>(now - before, 0);
}

std::uint32_t misuses(std::string& last) {
    char text[256] = {};
    const std::uint32_t count = virtualCamerasMisuses(text, sizeof(text));
    last = text;
    return count;
}

// What is counted over the whole process.
struct Counts {
    std::int64_t interfaces = alive().interfaces;
    std::int64_t threadCount = threads();
    std::int64_t comStarts = win32::comBalance();
    std::int64_t comStopsTooMany = win32::unbalancedComStops();
    std::int64_t taskMemory = win32::taskMemoryBlocks();
    std::int64_t texts = win32::bstrs();
    std::int64_t searches = win32::openSearches();
    std::int64_t events = win32::openEvents();
};

Remains remainsSince(const Counts& before) {
    const Counts now;
    const VirtualCamerasAlive counts = alive();
    Remains remains;
    remains.grabbers = counts.grabbers;
    remains.openDevices = counts.openDevices;
    remains.liveDevices = counts.liveDevices;
    remains.listeners = counts.listeners;
    remains.sinks = counts.sinks;
    remains.buffers = counts.buffers;
    remains.items = counts.items;
    remains.references = now.interfaces - before.interfaces;
    remains.threads = threadsSince(before.threadCount);
    remains.comStarts = now.comStarts - before.comStarts;
    remains.comStopsTooMany = now.comStopsTooMany - before.comStopsTooMany;
    remains.taskMemory = now.taskMemory - before.taskMemory;
    remains.texts = now.texts - before.texts;
    remains.searches = now.searches - before.searches;
    return remains;
}

void loadRig(const std::string& rig) {
    char message[512] = {};
    if (virtualCamerasLoadRig(rig.c_str(), message, sizeof(message)) != 0) {
        throw std::logic_error(message);
    }
}

}  // namespace

void PrintTo(const Remains& remains, std::ostream* out) {
    *out << "grabbers " << remains.grabbers << ", open " << remains.openDevices << ", live "
         << remains.liveDevices << ", listeners " << remains.listeners << ", sinks "
         << remains.sinks << ", buffers " << remains.buffers << ", items " << remains.items
         << ", references " << remains.references << ", threads " << remains.threads
         << ", COM starts " << remains.comStarts << ", COM stops too many "
         << remains.comStopsTooMany << ", task memory " << remains.taskMemory << ", texts "
         << remains.texts << ", searches " << remains.searches;
}

CVisitGround::CVisitGround(const VisitedCamera& camera) : m_id(idOf(camera)), m_rig(rigOf(camera)) {
    virtualCamerasReset();
    virtualCamerasSetClock(VIRTUAL_CAMERAS_CLOCK_STEPPED);
    win32::reset();
    DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr);
    // What is made once in a process is there after these two. The thread sanitizer adds a
    // thread of its own to a program's first, which a camera that never runs does not start.
    std::thread([] {}).join();
    visit();
    visit([] { virtualCamerasRecordCalls(1); }, [this] { readCalls(); });
    virtualCamerasRecordCalls(0);
    m_reference = visit();
}

CVisitGround::~CVisitGround() {
    virtualCamerasReset();
    win32::reset();
}

void CVisitGround::readCalls() {
    readInterfaces();
    std::map<std::string, std::uint32_t> seen;
    for (const VirtualCamerasCall& call : library_log::calls()) {
        m_calls.push_back({call.operation, ++seen[call.operation],
                           std::string_view(call.result).starts_with("0x")});
    }
}

// From the calls that ask each interface for its kind.
void CVisitGround::readInterfaces() {
    constexpr std::string_view question = "::getInterfaceID";
    for (const VirtualCamerasCall& call : library_log::calls()) {
        const std::string_view operation = call.operation;
        const std::string arguments = call.arguments;
        const std::size_t comma = arguments.find(',');
        if (!operation.ends_with(question) || comma == std::string::npos) {
            continue;
        }
        const std::string name(operation.substr(0, operation.size() - question.size()));
        m_interfaces.push_back({arguments.substr(0, comma), arguments.substr(comma + 1), name});
    }
}

std::map<std::string, std::int32_t> CVisitGround::heldInterfaces() const {
    std::map<std::string, std::int32_t> held;
    for (const Interface& each : m_interfaces) {
        held[each.item + "," + each.element + "," + each.name] =
            std::max(0, virtualCamerasInterfaceReferences(m_id.c_str(), each.item.c_str(),
                                                          each.element.c_str(), each.name.c_str()));
    }
    return held;
}

Outcome CVisitGround::visit(const std::function<void()>& arrange,
                            const std::function<void()>& askAfter) {
    ++m_visits;
    win32::reset();
    loadRig(m_rig);
    channelRegistry() = ChannelRegistry();
    Outcome outcome;
    const std::uint32_t misusesBefore = misuses(outcome.misuse);
    const Counts before;
    if (arrange) {
        arrange();
    }
    {
        CHostVisit visit(m_id);
        visit.run();
        outcome.transcript = visit.transcript();
        outcome.listings = visit.listings();
        outcome.channels = visit.channels();
        outcome.copiedFrames = visit.copiedFrames();
        outcome.gotForeignFrames = visit.gotForeignFrames();
        outcome.locksAfterStop = visit.locksAfterStop();
        outcome.thrown = visit.thrown();
    }
    if (askAfter) {
        askAfter();
    }
    virtualCamerasClearFailures();
    win32::clearInjected();
    outcome.remains = remainsSince(before);
    outcome.events = win32::openEvents() - before.events;
    outcome.heldInterfaces = heldInterfaces();
    for (const auto& [name, references] : outcome.heldInterfaces) {
        outcome.remains.references -= references;
    }
    outcome.misuses = misuses(outcome.misuse) - misusesBefore;
    // Where no camera was to be had, nobody could close the last one.
    DShowLib::ExitLibrary();
    return outcome;
}

void CVisitGround::tell(std::string_view what, std::uint64_t count, std::uint64_t failed) const {
    std::cout << "[  VISITS  ] " << m_visits << " visits, " << count << " " << what << ", "
              << failed << " failures of them\n";
}

void CVisitGround::expectNothingLeft(const Outcome& outcome) const {
    // A host that had to ask twice for its cameras may have had two channels for each, and one
    // more where a camera answers that throws otherwise.
    const std::int32_t mostChannels =
        outcome.listings + std::max(0, outcome.channels - m_reference.channels);
    // Of two items of one name the control sees the first alone; the reference knows.
    Remains expected;
    expected.references = std::clamp<std::int64_t>(outcome.remains.references, 0,
                                                   mostChannels * m_reference.remains.references);
    EXPECT_EQ(outcome.remains, expected);
    EXPECT_LE(outcome.events, mostChannels * m_reference.events);
    for (const auto& [name, references] : outcome.heldInterfaces) {
        const auto found = m_reference.heldInterfaces.find(name);
        const std::int32_t most = found != m_reference.heldInterfaces.end() ? found->second : 0;
        EXPECT_LE(references, mostChannels * most) << name;
    }
    EXPECT_EQ(win32::lostCalls(), 0U);
}

void CVisitGround::expectAsReference(const Outcome& outcome) const {
    expectNothingLeft(outcome);
    // A camera without formats has its current one, which stands for nothing, asked about.
    EXPECT_EQ(outcome.misuses, m_reference.misuses) << outcome.misuse;
    EXPECT_FALSE(outcome.gotForeignFrames);
    EXPECT_EQ(outcome.locksAfterStop, 0);
    EXPECT_EQ(outcome.copiedFrames, m_reference.copiedFrames);
    if (outcome.transcript == m_reference.transcript) {
        return;
    }
    const auto [seen, expected] =
        std::mismatch(outcome.transcript.begin(), outcome.transcript.end(),
                      m_reference.transcript.begin(), m_reference.transcript.end());
    const auto place = static_cast<std::size_t>(seen - outcome.transcript.begin());
    const std::size_t from = place - std::min<std::size_t>(place, 80);
    ADD_FAILURE() << "at " << place << ", seen:\n"
                  << outcome.transcript.substr(from, 160) << "\nexpected:\n"
                  << m_reference.transcript.substr(from, 160);
}

}  // namespace visits
