// SPDX-License-Identifier: MIT
// camhost.exe doctor on the built DLLs, and on folders in which something is wrong.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/camhost/program.h"

namespace camhost::test {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

constexpr const char* adapterName = "velmora_adapter.dll";
constexpr const char* captureName = "ORV_CAPLB11_x64.dll";

// A folder of the test's own with both DLLs, of which the test spoils one.
class DoctorProgram : public testing::Test {
protected:
    DoctorProgram() {
        std::filesystem::remove_all(m_folder);
        std::filesystem::create_directories(m_folder);
        for (const char* name : {adapterName, captureName}) {
            std::filesystem::copy_file(programFolder() / name, m_folder / name);
        }
    }

    std::string file(const char* name) const { return utf8(m_folder / name); }
    std::string content(const char* name) const { return readFile(m_folder / name); }
    void put(const char* name, const std::string& bytes) const {
        writeFile(m_folder / name, bytes);
    }
    Outcome doctor(std::vector<std::string> options = {}) const {
        options.insert(options.end(),
                       {"--rig", "standard", "--adapter", file(adapterName), "doctor"});
        return runCamhost(options);
    }

    std::filesystem::path m_folder = testFolder() / "adapter";
};

TEST(Doctor, FindsNothingWrongWithWhatIsBuilt) {
    const Outcome outcome = runCamhost({"--rig", "standard", "doctor"});
    EXPECT_EQ(outcome.exit, 0) << outcome.out;
    EXPECT_EQ(outcome.err, "");
    const std::string folder = utf8(programFolder());
    EXPECT_THAT(outcome.out, HasSubstr("OK    adapter: " + folder +
                                       "\\velmora_adapter.dll (beside "
                                       "camhost)\n"
                                       "OK    adapter file: a library for x64\n"
                                       "OK    export: GetVideoChannel\n"));
    EXPECT_THAT(outcome.out,
                ContainsRegex("\nOK    import KERNEL32.dll: C:.windows.system32.kernel32.dll\n"));
    EXPECT_THAT(
        outcome.out,
        HasSubstr("OK    delayed import ORV_CAPLB11_x64.dll: 62 functions, bound at the first "
                  "call\n"
                  "OK    capture library: " +
                  folder +
                  "\\ORV_CAPLB11_x64.dll (beside the "
                  "adapter)\n"
                  "OK    capture library file: a library for x64\n"
                  "OK    kind of ABI: GNU's, that of the adapter\n"
                  "OK    functions: all 62 are exported by it\n"));
    EXPECT_THAT(
        outcome.out,
        HasSubstr("OK    load: the adapter is loaded\n"
                  "OK    cameras: 5: 1A2B \"SIM Mono 23\", 77C01 \"SIM Colour 5\", 2F00D \"SIM "
                  "Colour 1\", FEDCBA9876543210 \"QRM 52\", #4 \"SIM Frame Grabber\"\n"
                  "OK    search order: no file is taken in the place of another\n"));
    EXPECT_THAT(outcome.out, Not(HasSubstr("FAIL")));
}

TEST_F(DoctorProgram, NamesTheCaptureLibraryThatIsMissingAndTheBox) {
    std::filesystem::remove(m_folder / captureName);
    const Outcome outcome = doctor();
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_THAT(outcome.out,
                HasSubstr("FAIL  capture library: " + file(captureName) + " is not there\n"));
    EXPECT_THAT(outcome.out,
                HasSubstr("FAIL  message box: Velmora Adapter: Runtime Libraries not found!\n"));
    // The one beside camhost.exe is none of this adapter's.
    EXPECT_THAT(outcome.out, HasSubstr("not taken, but for other programs in the way: "));
}

TEST_F(DoctorProgram, TakesTheCaptureLibraryBesideTheAdapterAndNamesTheOther) {
    const Outcome outcome = doctor();
    EXPECT_EQ(outcome.exit, 0) << outcome.out;
    EXPECT_THAT(outcome.out,
                HasSubstr("OK    search order: no file is taken in the place of another\n"
                          "      not taken, but for other programs in the way: " +
                          utf8(programFolder() / captureName) + "\n"));
}

TEST_F(DoctorProgram, KnowsALibraryOf32Bits) {
    std::string bytes = content(adapterName);
    const auto header = static_cast<std::size_t>(static_cast<unsigned char>(bytes[0x3C]));
    bytes.replace(header + 4, 2, "\x4C\x01");
    put(adapterName, bytes);
    const Outcome outcome = doctor();
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_EQ(outcome.err, "error: 1 of 2 checks failed\n");
    EXPECT_THAT(outcome.out, HasSubstr("FAIL  adapter file: " + file(adapterName) +
                                       " is for x86 (32 bits), and not for x64\n"));
}

TEST_F(DoctorProgram, KnowsDamagedLibraries) {
    put(captureName, content(captureName).substr(0, 5000));
    const Outcome capture = doctor();
    EXPECT_EQ(capture.exit, 3);
    EXPECT_THAT(capture.out, HasSubstr("FAIL  capture library file: " + file(captureName) +
                                       " is damaged, or no library: "));
    EXPECT_THAT(capture.out,
                HasSubstr("FAIL  message box: Velmora Adapter: Runtime Libraries not found!\n"));
    put(adapterName, "not a library");
    const Outcome adapter = doctor();
    EXPECT_EQ(adapter.exit, 3);
    EXPECT_THAT(adapter.out, HasSubstr("FAIL  adapter file: " + file(adapterName) +
                                       " is damaged, or no library: it is no file of Windows\n"));
}

TEST_F(DoctorProgram, NamesAnImportThatNobodyHas) {
    std::string bytes = content(adapterName);
    const auto name = bytes.find("OLEAUT32.dll");
    ASSERT_NE(name, bytes.npos);
    bytes.replace(name, 12, "NOLEAUT3.dll");
    put(adapterName, bytes);
    const Outcome outcome = doctor();
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_THAT(outcome.out, HasSubstr("FAIL  import NOLEAUT3.dll: it can not be loaded: "));
    EXPECT_THAT(outcome.out, HasSubstr("      install what brings NOLEAUT3.dll\n"));
    EXPECT_THAT(outcome.out, HasSubstr("FAIL  load: the adapter "));
}

TEST_F(DoctorProgram, NamesAFunctionThatALibraryLacks) {
    std::string bytes = content(adapterName);
    const auto name = bytes.find("OleInitialize");
    ASSERT_NE(name, bytes.npos);
    bytes.replace(name, 13, "OleInitialism");
    put(adapterName, bytes);
    const Outcome outcome = doctor();
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_THAT(outcome.out, ContainsRegex("FAIL  import ole32.dll: .* lacks OleInitialism\n"));
}

TEST_F(DoctorProgram, NamesAnotherAdapterWhereThereIsNone) {
    const Outcome outcome = runCamhost({"--adapter", "gone\\velmora_adapter.dll", "doctor"});
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_THAT(
        outcome.out,
        HasSubstr("there is one beside camhost: " + utf8(programFolder() / adapterName) + "\n"));
}

TEST(Camhost, CompletionAndManPageNeedNoAdapter) {
    const Outcome script = runCamhost({"--adapter", "gone.dll", "completion", "bash"});
    EXPECT_EQ(script.exit, 0);
    EXPECT_THAT(script.out, HasSubstr("\ncomplete -F _camhost camhost"));
    const Outcome page = runCamhost({"--adapter", "gone.dll", "manual"});
    EXPECT_EQ(page.exit, 0);
    EXPECT_THAT(page.out, HasSubstr("\n.TH CAMHOST 1 "));
}

}  // namespace
}  // namespace camhost::test
