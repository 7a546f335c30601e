// SPDX-License-Identifier: MIT
// An adapter made of plain data, and a machine with a clock of its own, for
// tests that run camhost as a whole in one process.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "camhost/base/system.h"
#include "velmora/host_blocks.h"

namespace camhost::test {

// What one WaitFrame answers, after `seconds` of the made-up clock.
struct Wait {
    std::int32_t result = 0;
    std::uint32_t status = 0;
    double seconds = 0.0;
    std::string message;
    std::map<std::string, std::string> values{};  // that the settings have from then on
    std::int32_t width = 0;                       // of the pictures from then on; 0: as before
    bool missing = false;                         // the camera is gone, which the next wait tells
};

// The waits that most tests are made of.
namespace usual_waits {
inline const Wait timeout{0, HOST_STATUS_NO_FRAME, 1.0, {}};
inline const Wait lost{1, HOST_STATUS_NO_DEVICE, 0.0, {}};
inline const Wait frame{0, HOST_STATUS_DONE, 0.125, {}};
}  // namespace usual_waits

struct MadeUpCamera {
    std::string name = "SIM Mono 23";
    std::string serial = "1A2B";
    std::int32_t width = 4;
    std::int32_t height = 2;
    std::uint32_t pixelType = 0;
    double exposure = -1.0;

    std::map<std::string, std::string> values;
    std::vector<std::string> commands{"propertydialog"};
    std::map<std::string, std::vector<std::string>> choices;
    std::map<std::string, std::string> refusals;  // key or command to message
    std::map<std::string, std::string> readBack;  // key to what a set leaves instead
    std::map<std::string, std::pair<std::string, std::string>> effects;  // of commands
    std::set<std::string> throwingCode;   // keys whose read throws 0x80004005
    std::set<std::string> throwingOther;  // and those, and commands, that throw no code or text
    bool openThrows = false;              // a code
    bool closeThrows = false;             // a code
    bool imageThrows = false;             // a code
    bool missing = false;
    bool noLists = false;  // not even an end of the numbered lists
    bool startRefused = false;
    int mostStarts = 1000;  // those behind are refused
    bool goesAtStart = false;

    std::deque<Wait> waits;
    Wait otherwise{0, 0, 0.125, {}};  // once they are used up
    std::vector<std::uint8_t> frame;
    double copySeconds = 0.0;
    std::size_t overrun = 0;      // bytes that a copy writes too many
    std::size_t textOverrun = 0;  // bytes that a read writes too many

    CameraParameterBlock parameters{};
    std::vector<std::string> log;
    bool live = false;
};

class CMadeUpLibraries : public CLibrarySearch {
public:
    std::string adapterPath(const std::string& wanted) const override {
        return wanted.empty() ? adapter : wanted;
    }
    FoundLibrary find(const std::string& name, const std::vector<std::string>&) override {
        const auto library = found.find(name);
        return library != found.end() ? library->second : FoundLibrary{{}, "it is not there", {}};
    }
    std::string loadedFile(const std::string& name) const override {
        const auto library = loaded.find(name);
        return library != loaded.end() ? library->second : std::string();
    }
    std::vector<SearchFolder> folders() const override { return searched; }

    std::string adapter = "made_up.dll";
    std::map<std::string, FoundLibrary> found;
    std::map<std::string, std::string> loaded;
    std::vector<SearchFolder> searched;
};

class CMadeUpSystem : public CSystem {
public:
    CMadeUpSystem();
    ~CMadeUpSystem() override;

    void setVariable(const std::string& name, const std::string& value) override;
    GetVideoChannelEntry loadAdapter(const std::string& file) override;
    std::string adapterFile() const override { return "made_up.dll"; }
    bool captureLibraryPresent() const override { return captureLibrary; }
    CLibrarySearch& librarySearch() override { return libraries; }
    std::string rigMistake() const override { return mistake; }
    void guardDialogs(bool on) override { guarded.push_back(on); }
    std::vector<Dialog> dialogsClosed() override { return dialogs; }
    std::optional<ProcessResources> resources() override { return held; }
    // A quarter of the time.
    std::optional<double> processorSeconds() override { return time / 4.0; }
    double seconds() override { return time; }
    void sleep(std::uint32_t milliseconds) override { time += milliseconds / 1000.0; }
    bool interrupted() override { return interruptAfter >= 0.0 && time >= interruptAfter; }
    bool messagesOnTerminal() override { return terminal; }
    std::string utcDate() override { return "2024-05-06T07:08:09Z"; }
    std::vector<std::uint8_t> randomBytes(std::size_t count) override {
        return std::vector<std::uint8_t>(count, 0xA5);
    }
    bool openBrowser(const std::string& address) override {
        opened.push_back(address);
        return onOpened == nullptr || onOpened(address);
    }

    CMadeUpLibraries libraries;
    std::vector<MadeUpCamera> cameras;
    std::map<std::string, std::string> variables;
    std::vector<Dialog> dialogs;
    std::vector<bool> guarded;
    ProcessResources held;
    bool captureLibrary = true;
    std::string mistake;              // of a rig
    std::vector<std::string> opened;  // addresses, in a browser
    std::function<bool(const std::string& address)> onOpened;
    bool terminal = false;
    double time = 100.0;
    double interruptAfter = -1.0;
};

// A camera with an exposure that an automatic guards, a gain and a trigger.
MadeUpCamera ordinaryCamera();

struct Outcome {
    int exit = -1;
    std::string out;
    std::string err;
};
Outcome run(CMadeUpSystem& system, const std::vector<std::string>& arguments);

}  // namespace camhost::test
