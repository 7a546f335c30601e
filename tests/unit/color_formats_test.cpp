// SPDX-License-Identifier: MIT
// The media subtype of every colour format, and the test for 8-bit grey.
#include "acquisition/color_formats.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>

namespace {

using Subtype = std::array<std::uint8_t, 16>;

// The subtype as it lies in memory, little-endian.
Subtype subtypeOf(std::uint32_t code) {
    const GUID subtype = ColorformatToSubtype(static_cast<ColorFormat>(code));
    static_assert(sizeof(subtype) == sizeof(Subtype));
    Subtype bytes{};
    std::memcpy(bytes.data(), &subtype, bytes.size());
    return bytes;
}

// {E436EBxx-524F-11CE-9F53-0020AF0BA770}
Subtype rgb(std::uint8_t last) {
    return {last, 0xEB, 0x36, 0xE4, 0x4F, 0x52, 0xCE, 0x11,
            0x9F, 0x53, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70};
}

// {xxxxxxxx-0000-0010-8000-00AA00389B71}
Subtype fourCharacters(char a, char b, char c, char d) {
    return {static_cast<std::uint8_t>(a),
            static_cast<std::uint8_t>(b),
            static_cast<std::uint8_t>(c),
            static_cast<std::uint8_t>(d),
            0x00,
            0x00,
            0x10,
            0x00,
            0x80,
            0x00,
            0x00,
            0xAA,
            0x00,
            0x38,
            0x9B,
            0x71};
}

TEST(ColorFormats, RgbFormatsHaveTheirDirectShowSubtypes) {
    EXPECT_EQ(rgb(0x7E), subtypeOf(1));
    EXPECT_EQ(rgb(0x7D), subtypeOf(2));
    EXPECT_EQ(rgb(0x7B), subtypeOf(3));
    EXPECT_EQ(rgb(0x7C), subtypeOf(4));
    EXPECT_EQ(rgb(0x7A), subtypeOf(5));
}

TEST(ColorFormats, OtherFormatsHaveTheSubtypeOfTheirFourCharacters) {
    EXPECT_EQ(fourCharacters('U', 'Y', 'V', 'Y'), subtypeOf(6));
    EXPECT_EQ(fourCharacters('Y', '8', '0', '0'), subtypeOf(7));
    EXPECT_EQ(fourCharacters('Y', 'G', 'B', '1'), subtypeOf(8));
    EXPECT_EQ(fourCharacters('Y', 'G', 'B', '0'), subtypeOf(9));
    EXPECT_EQ(fourCharacters('B', 'Y', '8', ' '), subtypeOf(10));
    EXPECT_EQ(fourCharacters('Y', '1', '6', ' '), subtypeOf(11));
    EXPECT_EQ(fourCharacters('R', 'G', 'B', '6'), subtypeOf(12));
}

TEST(ColorFormats, FieldsOfTheFourCharacterSubtypeAreLittleEndian) {
    const GUID subtype = ColorformatToSubtype(ColorFormat::eY800);
    EXPECT_EQ(0x30303859U, subtype.Data1);
    EXPECT_EQ(0x0000, subtype.Data2);
    EXPECT_EQ(0x0010, subtype.Data3);
    EXPECT_EQ(0x80, subtype.Data4[0]);
    EXPECT_EQ(0x71, subtype.Data4[7]);
}

TEST(ColorFormats, UnknownCodesHaveTheNullSubtype) {
    EXPECT_EQ(Subtype{}, subtypeOf(0));
    EXPECT_EQ(Subtype{}, subtypeOf(13));
    EXPECT_EQ(Subtype{}, subtypeOf(0x80000007));
    EXPECT_EQ(Subtype{}, subtypeOf(std::numeric_limits<std::uint32_t>::max()));
}

TEST(ColorFormats, CodesAreTheLibrarysNumbers) {
    EXPECT_EQ(1U, static_cast<std::uint32_t>(ColorFormat::eRGB32));
    EXPECT_EQ(2U, static_cast<std::uint32_t>(ColorFormat::eRGB24));
    EXPECT_EQ(7U, static_cast<std::uint32_t>(ColorFormat::eY800));
    EXPECT_EQ(12U, static_cast<std::uint32_t>(ColorFormat::eRGB64));
}

TEST(Y800Text, IsKnownByItsFirstFourCharacters) {
    EXPECT_TRUE(isY800Text("Y800 (640x480)"));
    EXPECT_TRUE(isY800Text("Y800"));
    EXPECT_TRUE(isY800Text("Y8000"));
}

TEST(Y800Text, ShorterTextsNeverPass) {
    EXPECT_FALSE(isY800Text(""));
    EXPECT_FALSE(isY800Text("Y"));
    EXPECT_FALSE(isY800Text("Y80"));
}

TEST(Y800Text, OtherTextsDoNotPass) {
    EXPECT_FALSE(isY800Text("y800 (640x480)"));
    EXPECT_FALSE(isY800Text(" Y800 (640x480)"));
    EXPECT_FALSE(isY800Text("BY8 (1280x960)"));
    EXPECT_FALSE(isY800Text("Y801"));
    EXPECT_FALSE(isY800Text("RGB32 Y800"));
}

}  // namespace
