// SPDX-License-Identifier: MIT
// camhost doctor on installations made of files in a folder: every line, right and wrong.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "camhost/base/failure.h"
#include "camhost/base/files.h"
#include "camhost/base/json.h"
#include "tests/camhost_logic/camhost_fixture.h"
#include "tests/camhost_logic/made_up_dll.h"

namespace camhost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr const char* captureName = "ORV_CAPLB11_x64.dll";

DllFile adapterDll() {
    return {.machine = 0x8664,
            .isLibrary = true,
            .exports = {"GetVideoChannel"},
            .imports = {{"KERNEL32.dll", {"Sleep"}}},
            .delayedImports = {{captureName, {"_Zopen", "_Zclose"}}}};
}

DllFile captureDll() {
    return {.machine = 0x8664,
            .isLibrary = true,
            .exports = {"_Zopen", "_Zclose", "_Zmore"},
            .imports = {{"KERNEL32.dll", {"Sleep"}}},
            .delayedImports = {}};
}

// A machine whose adapter can not be loaded.
class CUnloadable : public CMadeUpSystem {
public:
    GetVideoChannelEntry loadAdapter(const std::string&) override {
        throw Failure{.exit = ExitCode::NotFound,
                      .code = "adapter_not_loaded",
                      .message = "the adapter can not be loaded: error 5",
                      .hint = "name it with --adapter"};
    }
};

void replaceAll(std::string& text, const std::string& what, const std::string& other) {
    for (auto at = text.find(what); at != text.npos; at = text.find(what, at + other.size())) {
        text.replace(at, what.size(), other);
    }
}

class Doctor : public CCamhostTest {
protected:
    Doctor() {
        prepare(m_system);
        put("adapter/velmora_adapter.dll", adapterDll());
        put(std::string("adapter/") + captureName, captureDll());
    }

    void prepare(CMadeUpSystem& system) {
        system.libraries.adapter = m_folder.file("adapter/velmora_adapter.dll");
        system.libraries.found["KERNEL32.dll"] = {"system/kernel32.dll", {}, {}};
        system.libraries.loaded[captureName] = captureFile();
        system.libraries.searched = {{m_folder.file("program/"), "beside camhost"},
                                     {m_folder.file("system/"), "in the system's folder", true},
                                     {m_folder.file("here/"), "in the current folder"}};
    }
    void put(const std::string& name, const std::string& bytes) {
        std::filesystem::create_directories(
            std::filesystem::path(m_folder.file(name)).parent_path());
        writeTextFile(m_folder.file(name), bytes);
    }
    void put(const std::string& name, const DllFile& dll) { put(name, dllText(dll)); }
    void remove(const std::string& name) { std::filesystem::remove(m_folder.file(name)); }

    std::string adapterFile() const { return m_folder.file("adapter/velmora_adapter.dll"); }
    std::string captureFile() const { return m_folder.file(std::string("adapter/") + captureName); }
    // The lines, with the test's folder as "@".
    std::string lines(const std::vector<std::string>& arguments = {"doctor"}) {
        m_outcome = camhost(arguments);
        std::string text = m_outcome.out;
        const std::string folder = m_folder.file("");
        replaceAll(text, folder, "@/");
        std::string inJson = folder;
        replaceAll(inJson, "\\", "\\\\");
        replaceAll(text, inJson, "@/");
        return text;
    }
    // Those that are wrong, each with its remedy.
    std::vector<std::string> wrongLines(const std::vector<std::string>& arguments = {"doctor"}) {
        std::vector<std::string> wrong;
        const std::string text = lines(arguments);
        for (auto at = text.find("FAIL  "); at != text.npos; at = text.find("FAIL  ", at + 1)) {
            const auto second = text.find('\n', text.find('\n', at) + 1);
            wrong.push_back(text.substr(at, second - at));
        }
        EXPECT_EQ(m_outcome.exit, wrong.empty() ? 0 : 3);
        return wrong;
    }

    Outcome m_outcome;
};

TEST_F(Doctor, TellsEveryLineOfARightInstallation) {
    EXPECT_EQ(lines(),
              "OK    adapter: @/adapter/velmora_adapter.dll (beside camhost)\n"
              "OK    adapter file: a library for x64\n"
              "OK    export: GetVideoChannel\n"
              "OK    import KERNEL32.dll: system/kernel32.dll\n"
              "OK    delayed import ORV_CAPLB11_x64.dll: 2 functions, bound at the first call\n"
              "OK    capture library: @/adapter/ORV_CAPLB11_x64.dll (beside the adapter)\n"
              "OK    capture library file: a library for x64\n"
              "OK    kind of ABI: GNU's, that of the adapter\n"
              "OK    functions: all 2 are exported by it\n"
              "OK    capture library import KERNEL32.dll: system/kernel32.dll\n"
              "OK    load: the adapter is loaded\n"
              "OK    cameras: 1: 1A2B \"SIM Mono 23\"\n"
              "OK    search order: no file is taken in the place of another\n"
              "all 13 checks are right\n");
    EXPECT_EQ(m_outcome.exit, 0);
    EXPECT_EQ(m_outcome.err, "");
    EXPECT_THAT(camera().log, ElementsAre("close"));
}

TEST_F(Doctor, TellsTheSameAsJson) {
    remove(std::string("adapter/") + captureName);
    put("adapter/velmora_adapter.dll", DllFile{.machine = 0x8664,
                                               .isLibrary = true,
                                               .exports = {},
                                               .imports = {{"KERNEL32.dll", {"Sleep"}}},
                                               .delayedImports = {}});
    EXPECT_EQ(lines({"--json", "doctor"}),
              "{\"schema\":\"camhost/1\",\"command\":\"doctor\",\"result\":["
              "{\"check\":\"adapter\",\"outcome\":\"ok\","
              "\"text\":\"@/adapter/velmora_adapter.dll (beside camhost)\"},"
              "{\"check\":\"adapter_file\",\"outcome\":\"ok\",\"text\":\"a library for x64\"},"
              "{\"check\":\"export\",\"outcome\":\"fail\","
              "\"text\":\"it does not export GetVideoChannel\","
              "\"remedy\":\"it is another library: name the camera adapter with --adapter\"},"
              "{\"check\":\"import\",\"subject\":\"KERNEL32.dll\",\"outcome\":\"ok\","
              "\"text\":\"system/kernel32.dll\"},"
              "{\"check\":\"search_order\",\"outcome\":\"ok\","
              "\"text\":\"no file is taken in the place of another\"}],"
              "\"error\":{\"code\":\"doctor\",\"message\":\"1 of 5 checks failed\"},\"exit\":3}\n");
}

TEST_F(Doctor, SaysWhereTheAdapterWasLookedFor) {
    remove("adapter/velmora_adapter.dll");
    EXPECT_EQ(lines(),
              "FAIL  adapter: @/adapter/velmora_adapter.dll is not there (looked for beside "
              "camhost)\n"
              "      put it beside camhost.exe, or name it with --adapter\n");
    EXPECT_EQ(m_outcome.exit, 3);
    EXPECT_EQ(m_outcome.err, "error: 1 of 1 checks failed\n");
    put("here/velmora_adapter.dll", adapterDll());
    EXPECT_THAT(lines(), HasSubstr("; there is one in the current folder: "
                                   "@/here/velmora_adapter.dll\n"));
    EXPECT_EQ(lines({"--adapter", m_folder.file("other.dll"), "doctor"}),
              "FAIL  adapter: @/other.dll is not there\n"
              "      name the adapter file behind --adapter\n");
}

TEST_F(Doctor, AFileThatIsNoLibraryForX64EndsIt) {
    const auto wrongFile = [&](const std::string& bytes) {
        put("adapter/velmora_adapter.dll", bytes);
        const std::vector<std::string> wrong = wrongLines();
        EXPECT_EQ(wrong.size(), 1U);
        EXPECT_THAT(m_outcome.out, Not(HasSubstr("load")));
        return wrong.empty() ? std::string() : wrong.front().substr(0, wrong.front().find('\n'));
    };
    DllFile other = adapterDll();
    other.machine = 0x014C;
    EXPECT_EQ(wrongFile(dllText(other)),
              "FAIL  adapter file: @/adapter/velmora_adapter.dll is for x86 (32 bits), and not "
              "for x64");
    other.machine = 0x8664;
    other.isLibrary = false;
    EXPECT_EQ(wrongFile(dllText(other)),
              "FAIL  adapter file: @/adapter/velmora_adapter.dll is a program, and no library");
    EXPECT_EQ(wrongFile(dllText(adapterDll()).substr(0, 600)),
              "FAIL  adapter file: @/adapter/velmora_adapter.dll is damaged, or no library: one "
              "of its tables leads out of it");
    EXPECT_EQ(wrongFile("not a library"),
              "FAIL  adapter file: @/adapter/velmora_adapter.dll is damaged, or no library: it "
              "is no file of Windows");
    EXPECT_THAT(lines(),
                HasSubstr("\n      copy the adapter for 64-bit Windows (x64) there anew\n"));
}

TEST_F(Doctor, AnImportThatIsNotThereNamesWhoBringsIt) {
    const std::pair<const char*, const char*> rows[] = {
        {"MSVCP140.dll", "install the Visual C++ redistributable for x64"},
        {"api-ms-win-crt-heap-l1-1-0.dll", "install the Visual C++ redistributable for x64"},
        {"vcruntime140d.dll", "that belongs to a debug build: take a release build"},
        {"libstdc++-6.dll",
         "copy the compiler's libstdc++-6.dll beside camhost.exe, or link it in statically"},
        {"frames.dll", "install what brings frames.dll"},
    };
    for (const auto& [library, remedy] : rows) {
        DllFile adapter = adapterDll();
        adapter.imports = {{library, {"f"}}};
        put("adapter/velmora_adapter.dll", adapter);
        EXPECT_THAT(wrongLines(),
                    ElementsAre(std::string("FAIL  import ") + library +
                                ": it can not be loaded: it is not there\n      " + remedy));
    }
}

TEST_F(Doctor, AnImportThatLacksFunctionsNamesThem) {
    m_system.libraries.found["KERNEL32.dll"].missing = {"a", "b", "c", "d"};
    remove(std::string("adapter/") + captureName);
    EXPECT_EQ(wrongLines().front(),
              "FAIL  import KERNEL32.dll: system/kernel32.dll lacks a, b, c and 1 more\n"
              "      it is another version than is wanted: install what brings KERNEL32.dll");
}

TEST_F(Doctor, ACaptureLibraryThatIsNotBesideTheAdapterIsMissed) {
    remove(std::string("adapter/") + captureName);
    put(std::string("here/") + captureName, captureDll());
    m_system.cameras.clear();
    m_system.libraries.loaded.clear();
    m_system.dialogs = {{"Velmora Adapter", "Runtime Libraries not found!"}};
    EXPECT_THAT(wrongLines(),
                ElementsAre("FAIL  capture library: @/adapter/ORV_CAPLB11_x64.dll is not there\n"
                            "      put the capture library beside the adapter, under that name: no "
                            "other folder is searched",
                            "FAIL  message box: Velmora Adapter: Runtime Libraries not found!\n"
                            "      mend what fails above, and try again"));
    EXPECT_THAT(m_outcome.out, Not(HasSubstr("cameras: none")));
    EXPECT_THAT(lines({"--json", "doctor"}),
                HasSubstr("\"dialogs\":[{\"caption\":\"Velmora Adapter\",\"text\":\"Runtime "
                          "Libraries not found!\"}]"));
}

TEST_F(Doctor, ACaptureLibraryThatIsDamagedOrOfAnotherMachineIsNamed) {
    put(std::string("adapter/") + captureName, "MZ");
    EXPECT_THAT(wrongLines(),
                ElementsAre("FAIL  capture library file: @/adapter/ORV_CAPLB11_x64.dll is damaged, "
                            "or no library: it ends too early\n"
                            "      copy the capture library for 64-bit Windows (x64) there anew, "
                            "from its maker's installation"));
    DllFile other = captureDll();
    other.machine = 0x014C;
    put(std::string("adapter/") + captureName, other);
    EXPECT_THAT(wrongLines().front(), HasSubstr(" is for x86 (32 bits), and not for x64\n"));
}

TEST_F(Doctor, ACaptureLibraryOfAnotherCompilerIsToldByItsNames) {
    DllFile microsoft = captureDll();
    microsoft.exports = {"?open@@YAXXZ", "?close@@YAXXZ"};
    put(std::string("adapter/") + captureName, microsoft);
    EXPECT_THAT(wrongLines(),
                ElementsAre("FAIL  kind of ABI: the adapter wants GNU's, the capture library has "
                            "Microsoft's\n"
                            "      take the adapter that was built with the compiler of the "
                            "capture library",
                            "FAIL  functions: 2 of 2 are not exported by it: _Zopen, _Zclose\n"
                            "      take the version of the capture library that the adapter was "
                            "built for"));
}

TEST_F(Doctor, ACaptureLibraryThatLacksAFunctionIsAnotherVersion) {
    DllFile older = captureDll();
    older.exports = {"_Zopen"};
    put(std::string("adapter/") + captureName, older);
    EXPECT_THAT(wrongLines(), ElementsAre(HasSubstr("1 of 2 are not exported by it: _Zclose\n")));
}

TEST_F(Doctor, WhatTheCaptureLibraryWantsIsLookedForBesideItFirst) {
    DllFile capture = captureDll();
    capture.imports = {{"frames.dll", {"f"}}, {"gone.dll", {"g"}}};
    put(std::string("adapter/") + captureName, capture);
    put("adapter/frames.dll", captureDll());
    EXPECT_THAT(wrongLines(), ElementsAre(HasSubstr("capture library import gone.dll: it can not "
                                                    "be loaded: it is not there\n")));
    EXPECT_THAT(lines(), HasSubstr("OK    capture library import frames.dll: "
                                   "@/adapter/frames.dll\n"));
}

TEST_F(Doctor, DelayedImportsInTheGnuWayAreFound) {
    put("adapter/velmora_adapter.dll", dllText(adapterDll(), DelayedBy::NoDirectory));
    EXPECT_THAT(lines(), HasSubstr("OK    functions: all 2 are exported by it\n"));
    EXPECT_EQ(m_outcome.exit, 0);
}

TEST_F(Doctor, AnAdapterWithoutACaptureLibraryIsFine) {
    DllFile alone = adapterDll();
    alone.delayedImports = {{"other.dll", {"f"}}};
    put("adapter/velmora_adapter.dll", alone);
    remove(std::string("adapter/") + captureName);
    m_system.libraries.found["other.dll"] = {"system/other.dll", {}, {}};
    EXPECT_THAT(lines(), HasSubstr("OK    delayed import other.dll: system/other.dll\n"
                                   "OK    load: the adapter is loaded\n"));
    EXPECT_EQ(m_outcome.exit, 0);
}

TEST_F(Doctor, AFileThatHidesTheSystemsIsATrap) {
    put("program/KERNEL32.dll", "another");
    put("system/KERNEL32.dll", "the system's");
    m_system.libraries.found["KERNEL32.dll"].file = m_folder.file("program/KERNEL32.dll");
    const auto wrong = wrongLines();
    ASSERT_FALSE(wrong.empty());
    EXPECT_EQ(wrong.front(),
              "FAIL  search order KERNEL32.dll: @/program/KERNEL32.dll is taken in the place of "
              "@/system/KERNEL32.dll\n"
              "      remove or rename it, unless it was put there for this");
    // The same bytes are no trap.
    put("program/KERNEL32.dll", "the system's");
    EXPECT_THAT(wrongLines(), ElementsAre());
}

TEST_F(Doctor, ACaptureLibraryFromElsewhereIsATrapAndACopyIsNone) {
    put(std::string("here/") + captureName, captureDll());
    EXPECT_THAT(lines(), HasSubstr("OK    search order: no file is taken in the place of another\n"
                                   "      not taken, but for other programs in the way: "
                                   "@/here/ORV_CAPLB11_x64.dll\n"));
    EXPECT_EQ(m_outcome.exit, 0);
    m_system.libraries.loaded[captureName] = m_folder.file(std::string("here/") + captureName);
    EXPECT_THAT(wrongLines(),
                ElementsAre("FAIL  search order ORV_CAPLB11_x64.dll: @/here/ORV_CAPLB11_x64.dll is "
                            "taken in the place of @/adapter/ORV_CAPLB11_x64.dll\n"
                            "      remove or rename it"));
}

TEST_F(Doctor, NoCameraIsNoFaultOfTheInstallation) {
    m_system.cameras.clear();
    EXPECT_THAT(lines(), HasSubstr("OK    cameras: none\n"
                                   "      is one plugged in, and its driver installed?\n"));
    EXPECT_EQ(m_outcome.exit, 0);
}

TEST_F(Doctor, ACameraThatDidNotOpenIsNamed) {
    camera().missing = true;
    camera().values.clear();
    camera().noLists = true;
    EXPECT_THAT(
        wrongLines(),
        ElementsAre("FAIL  camera 1A2B \"SIM Mono 23\": it did not open; in use elsewhere?\n"
                    "      close what uses it, or unplug it and plug it in again"));
    EXPECT_THAT(m_outcome.out, HasSubstr("OK    cameras: 1: 1A2B \"SIM Mono 23\"\n"));
}

TEST_F(Doctor, AWrongRigIsALineOfItsOwn) {
    m_system.cameras.clear();
    m_system.mistake = "standrad: there is no such built-in rig";
    EXPECT_THAT(wrongLines({"--rig", "standrad", "doctor"}),
                ElementsAre("FAIL  cameras: standrad: there is no such built-in rig\n"
                            "      name another rig with --rig, or mend its file"));
    EXPECT_EQ(m_system.variables["VIRTUAL_CAMERAS_RIG"], "standrad");
}

TEST_F(Doctor, AMessageBoxIsWrongAlsoWhereCamerasAreFound) {
    m_system.dialogs = {{"Device Error", "Failed to initialize device SIM"}};
    EXPECT_THAT(wrongLines(),
                ElementsAre("FAIL  message box: Device Error: Failed to initialize device SIM\n"
                            "      it is the adapter's own; its words are all that is known"));
    EXPECT_EQ(m_outcome.err, "error: 1 of 14 checks failed\n");
}

TEST_F(Doctor, AnAdapterThatDoesNotLoadIsToldWithItsReason) {
    CUnloadable system;
    prepare(system);
    const Outcome outcome = run(system, {"doctor"});
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_THAT(outcome.out,
                HasSubstr("FAIL  load: the adapter can not be loaded: error 5\n"
                          "      copy the adapter there anew; else it is its own start that fails\n"
                          "OK    search order"));
}

}  // namespace
}  // namespace camhost::test
