// SPDX-License-Identifier: MIT
// What is read of a library's file, and that no bytes whatever lead out of it.
#include "camhost/doctor/dll_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "tests/camhost_logic/made_up_dll.h"

namespace camhost::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

DllFile ordinaryDll() {
    return {.machine = 0x8664,
            .isLibrary = true,
            .exports = {"GetVideoChannel", "_Zsecond"},
            .imports = {{"KERNEL32.dll", {"Sleep", "LoadLibraryW"}}, {"ole32.dll", {}}},
            .delayedImports = {{"ORV_CAPLB11_x64.dll", {"_Za", "_Zb"}}}};
}

// In memory of exactly that size, so that a sanitizer sees a byte too many.
std::optional<DllFile> read(const std::vector<std::uint8_t>& bytes, std::string& reason) {
    const auto exact = std::make_unique<std::uint8_t[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), exact.get());
    return readDllFile({exact.get(), bytes.size()}, reason);
}

std::string reasonOf(const std::vector<std::uint8_t>& bytes) {
    std::string reason;
    EXPECT_FALSE(read(bytes, reason));
    return reason;
}

TEST(DllFile, TellsItsMachineExportsAndImports) {
    std::string reason;
    const auto dll = read(dllBytes(ordinaryDll()), reason);
    ASSERT_TRUE(dll) << reason;
    EXPECT_EQ(dll->machine, 0x8664);
    EXPECT_TRUE(dll->isLibrary);
    EXPECT_THAT(dll->exports, ElementsAre("GetVideoChannel", "_Zsecond"));
    ASSERT_EQ(dll->imports.size(), 2U);
    EXPECT_EQ(dll->imports[0].library, "KERNEL32.dll");
    EXPECT_THAT(dll->imports[0].functions, ElementsAre("Sleep", "LoadLibraryW"));
    EXPECT_EQ(dll->imports[1].library, "ole32.dll");
    EXPECT_THAT(dll->imports[1].functions, IsEmpty());
}

TEST(DllFile, DelayedImportsAreFoundWithAndWithoutTheirDirectory) {
    for (const DelayedBy by : {DelayedBy::Directory, DelayedBy::NoDirectory}) {
        std::string reason;
        const auto dll = read(dllBytes(ordinaryDll(), by), reason);
        ASSERT_TRUE(dll) << reason;
        ASSERT_EQ(dll->delayedImports.size(), 1U);
        EXPECT_EQ(dll->delayedImports[0].library, "ORV_CAPLB11_x64.dll");
        EXPECT_THAT(dll->delayedImports[0].functions, ElementsAre("_Za", "_Zb"));
    }
}

TEST(DllFile, ImportsByNumberAreLeftOut) {
    std::vector<std::uint8_t> bytes = dllBytes(
        {.machine = 0x8664, .isLibrary = true, .exports = {}, .imports = {{"a.dll", {"x", "y"}}}});
    // The content begins with the 40 bytes of the exports; then come two descriptors, and the
    // table.
    put32(bytes, contentAt + 80 + 4, 0x80000000);
    std::string reason;
    const auto dll = read(bytes, reason);
    ASSERT_TRUE(dll) << reason;
    EXPECT_THAT(dll->imports[0].functions, ElementsAre("y"));
}

TEST(DllFile, OfAnotherMachineOnlyThatIsRead) {
    DllFile other = ordinaryDll();
    other.machine = 0x014C;
    std::string reason;
    const auto dll = read(dllBytes(other), reason);
    ASSERT_TRUE(dll) << reason;
    EXPECT_EQ(dll->machine, 0x014C);
    EXPECT_THAT(dll->exports, IsEmpty());
    EXPECT_EQ(machineName(0x014C), "x86 (32 bits)");
    EXPECT_EQ(machineName(0xAA64), "ARM64");
    EXPECT_EQ(machineName(0x0200), "machine 0x0200");
}

TEST(DllFile, AProgramIsNoLibrary) {
    DllFile program = ordinaryDll();
    program.isLibrary = false;
    std::string reason;
    const auto dll = read(dllBytes(program), reason);
    ASSERT_TRUE(dll) << reason;
    EXPECT_FALSE(dll->isLibrary);
}

TEST(DllFile, DamageHasItsReason) {
    EXPECT_EQ(reasonOf({}), "it is no file of Windows");
    EXPECT_EQ(reasonOf({'M', 'Z'}), "it ends too early");
    EXPECT_EQ(reasonOf(std::vector<std::uint8_t>(1000, 'x')), "it is no file of Windows");

    std::vector<std::uint8_t> bytes = dllBytes(ordinaryDll());
    put32(bytes, 0x3C, 0x100);
    EXPECT_EQ(reasonOf(bytes), "it has no header of a library");
    put32(bytes, 0x3C, 0xFFFFFFF0);
    EXPECT_EQ(reasonOf(bytes), "it ends too early");

    bytes = dllBytes(ordinaryDll());
    put32(bytes, 0x98, 0x10B);
    EXPECT_EQ(reasonOf(bytes), "its header is not that of 64 bits");
    bytes = dllBytes(ordinaryDll());
    bytes[0x87] = 1;
    EXPECT_EQ(reasonOf(bytes), "it has more sections than any library");
    bytes = dllBytes(ordinaryDll());
    put32(bytes, directoriesAt, 0x7FFFFFF0);
    EXPECT_EQ(reasonOf(bytes), "one of its tables leads out of it");
    bytes = dllBytes(ordinaryDll());
    put32(bytes, contentAt + 24, 0xFFFFFFFF);  // exports
    EXPECT_NE(reasonOf(bytes), "");
    bytes = dllBytes(ordinaryDll());
    put32(bytes, contentAt + 40, 0x1FFFFFFF);  // the first one's name
    EXPECT_EQ(reasonOf(bytes), "one of its names has no end, or leads out of it");
}

// A table that leads into itself would be read without end.
TEST(DllFile, MoreNamesThanAnyLibraryHasEndIt) {
    std::vector<std::uint8_t> bytes =
        dllBytes({.machine = 0x8664, .isLibrary = true, .exports = {"x"}, .imports = {}});
    const std::size_t table = bytes.size();
    const std::size_t names = 200000;
    put32(bytes, contentAt + 24, names);
    put32(bytes, contentAt + 32, 0x1000 + table - contentAt);
    for (std::size_t i = 0; i < names; ++i) {
        put32(bytes, table + 4 * i, 0x1000 + 48);
    }
    put32(bytes, 0x98 + 0xF0 + 16, bytes.size() - contentAt);
    EXPECT_EQ(reasonOf(bytes), "it has more names than any library");
}

TEST(DllFile, CutAnywhereItIsReadOrRefused) {
    for (const DelayedBy by : {DelayedBy::Directory, DelayedBy::NoDirectory}) {
        const std::vector<std::uint8_t> whole = dllBytes(ordinaryDll(), by);
        for (std::size_t length = 0; length < whole.size(); ++length) {
            std::string reason;
            const std::vector<std::uint8_t> part(
                whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
            if (!read(part, reason)) {
                EXPECT_NE(reason, "") << length;
            }
        }
    }
}

TEST(DllFile, WithAnyByteChangedItIsReadOrRefused) {
    const std::vector<std::uint8_t> whole = dllBytes(ordinaryDll());
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const char value : {'\0', '\x01', '\x7F', '\x80', '\xFF'}) {
            std::vector<std::uint8_t> changed = whole;
            changed[at] = static_cast<std::uint8_t>(value);
            std::string reason;
            if (!read(changed, reason)) {
                EXPECT_NE(reason, "") << at;
            }
        }
    }
}

TEST(DllFile, NamesTellTheirKindOfCompiler) {
    EXPECT_EQ(kindOfNames({"_Za", "_Zb", "plain"}), NameKind::Gnu);
    EXPECT_EQ(kindOfNames({"?a@@", "plain", "also"}), NameKind::Microsoft);
    EXPECT_EQ(kindOfNames({"plain"}), NameKind::Plain);
    EXPECT_EQ(kindOfNames({}), NameKind::Plain);
}

}  // namespace
}  // namespace camhost::test
