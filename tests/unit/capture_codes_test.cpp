// SPDX-License-Identifier: MIT
// Identifiers and result codes of the capture library's device properties.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

#include "capture/library/property_ids.h"
#include "capture/result_codes.h"

namespace {

std::string textOf(const GUID& id) {
    std::array<char, 40> text{};
    const auto& tail = id.Data4;
    std::snprintf(text.data(), text.size(), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                  static_cast<unsigned>(id.Data1), static_cast<unsigned>(id.Data2),
                  static_cast<unsigned>(id.Data3), static_cast<unsigned>(tail[0]),
                  static_cast<unsigned>(tail[1]), static_cast<unsigned>(tail[2]),
                  static_cast<unsigned>(tail[3]), static_cast<unsigned>(tail[4]),
                  static_cast<unsigned>(tail[5]), static_cast<unsigned>(tail[6]),
                  static_cast<unsigned>(tail[7]));
    return text.data();
}

TEST(PropertyIds, InterfacesDifferInTheLastByteOnly) {
    using namespace DShowLib;
    EXPECT_EQ("{99B44940-BFE1-4083-ADA1-BE703F4B8E03}", textOf(IID_IVCDRangeProperty));
    EXPECT_EQ("{99B44940-BFE1-4083-ADA1-BE703F4B8E04}", textOf(IID_IVCDSwitchProperty));
    EXPECT_EQ("{99B44940-BFE1-4083-ADA1-BE703F4B8E05}", textOf(IID_IVCDButtonProperty));
    EXPECT_EQ("{99B44940-BFE1-4083-ADA1-BE703F4B8E06}", textOf(IID_IVCDMapStringsProperty));
    EXPECT_EQ("{99B44940-BFE1-4083-ADA1-BE703F4B8E08}", textOf(IID_IVCDAbsoluteValueProperty));
}

TEST(PropertyIds, ItemsAndElementsHaveTheLibrarysNumbers) {
    using namespace DShowLib;
    EXPECT_EQ("{284C0E06-010B-45BF-8291-09D90A459B28}", textOf(VCDID_Brightness));
    EXPECT_EQ("{284C0E07-010B-45BF-8291-09D90A459B28}", textOf(VCDID_Contrast));
    EXPECT_EQ("{B57D3000-0AC6-4819-A609-272A33140ACA}", textOf(VCDElement_Value));
    EXPECT_EQ("{B57D3001-0AC6-4819-A609-272A33140ACA}", textOf(VCDElement_Auto));
    EXPECT_EQ("{B57D3002-0AC6-4819-A609-272A33140ACA}", textOf(VCDElement_OnePush));
}

// The code that is thrown as a 32-bit integer; none when nothing is thrown.
std::optional<std::int32_t> thrownFor(std::uint32_t result) {
    try {
        throwIfFailed(static_cast<HRESULT>(result));
    } catch (std::int32_t code) {
        return code;
    }
    return std::nullopt;
}

TEST(ResultCodes, FailureIsThrownAsA32BitInteger) {
    EXPECT_EQ(-2147467259, thrownFor(0x80004005));
    EXPECT_EQ(-1, thrownFor(0xFFFFFFFF));
    EXPECT_EQ(-2147483647 - 1, thrownFor(0x80000000));
}

TEST(ResultCodes, SuccessThrowsNothing) {
    EXPECT_EQ(std::nullopt, thrownFor(0));
    EXPECT_EQ(std::nullopt, thrownFor(1));
    EXPECT_EQ(std::nullopt, thrownFor(0x7FFFFFFF));
}

}  // namespace
