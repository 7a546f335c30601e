// SPDX-License-Identifier: MIT
// Text into host buffers: bounds, cuts, missing buffers, and how numbers are written.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <clocale>
#include <cstring>
#include <limits>
#include <locale>
#include <memory>
#include <string>

#include "platform/text.h"

namespace {

constexpr char canary = '\x5A';

// A host's buffer of exactly 256 bytes between bytes that nobody may write.
struct GuardedBuffer {
    GuardedBuffer() { bytes.fill(canary); }

    char* text() { return bytes.data() + margin; }
    // Whether all bytes but the first `count` of the buffer are as they were.
    bool untouchedBeyond(std::size_t count) const {
        const auto isCanary = [](char byte) { return byte == canary; };
        const auto start = bytes.begin() + margin;
        return std::all_of(bytes.begin(), start, isCanary) &&
               std::all_of(start + static_cast<std::ptrdiff_t>(count), bytes.end(), isCanary);
    }

    static constexpr std::ptrdiff_t margin = 64;
    std::array<char, 64 + 256 + 64> bytes;
};

std::string written(const CTextPiece& piece) {
    return std::string(piece.text());
}

TEST(BoundedText, EveryBoundKeepsThatManyCharactersAtMost255) {
    const std::string longText(600, 'x');
    for (std::size_t bound = 0; bound <= 300; ++bound) {
        GuardedBuffer buffer;
        writeText(buffer.text(), bound, longText);
        const std::size_t kept = bound < 255 ? bound : 255;
        ASSERT_EQ(std::string(kept, 'x'), buffer.text()) << "bound " << bound;
        ASSERT_TRUE(buffer.untouchedBeyond(kept + 1)) << "bound " << bound;
    }
}

TEST(BoundedText, TextThatJustFitsIsNotCut) {
    for (std::size_t size = 0; size <= 255; ++size) {
        GuardedBuffer buffer;
        writeText(buffer.text(), size, std::string(size, 'y'));
        ASSERT_EQ(std::string(size, 'y'), buffer.text()) << "size " << size;
        ASSERT_TRUE(buffer.untouchedBeyond(size + 1)) << "size " << size;
    }
}

TEST(BoundedText, NothingIsWrittenBehindTheBoundOfASmallBuffer) {
    for (std::size_t bound = 0; bound <= 32; ++bound) {
        // As large as the bound needs it, so that tools see a byte too many.
        const auto exact = std::make_unique<char[]>(bound + 1);
        writeText(exact.get(), bound, "0123456789", "0123456789", "0123456789", "0123456789");
        ASSERT_EQ(std::string("01234567890123456789012345678901").substr(0, bound), exact.get());
    }
}

TEST(BoundedText, PiecesFollowEachOther) {
    GuardedBuffer buffer;
    writeText(buffer.text(), 255, "Value must be between ", std::int32_t{-3}, " and ",
              std::int32_t{17}, "!");
    EXPECT_STREQ("Value must be between -3 and 17!", buffer.text());
    EXPECT_TRUE(buffer.untouchedBeyond(33));
}

TEST(BoundedText, TheCutMayFallIntoAnyPiece) {
    GuardedBuffer buffer;
    writeText(buffer.text(), 5, "abc", std::int32_t{12345}, "never");
    EXPECT_STREQ("abc12", buffer.text());
    writeText(buffer.text(), 3, "abc", std::int32_t{12345}, "never");
    EXPECT_STREQ("abc", buffer.text());
    writeText(buffer.text(), 0, "abc");
    EXPECT_STREQ("", buffer.text());
}

TEST(BoundedText, CutsAreByByteEvenInsideACharacter) {
    GuardedBuffer buffer;
    writeText(buffer.text(), 2, "a\xC3\xA4");
    EXPECT_STREQ("a\xC3", buffer.text());
}

TEST(BoundedText, OldTextIsReplaced) {
    GuardedBuffer buffer;
    writeText(buffer.text(), 255, "a longer text");
    writeText(buffer.text(), 255, "new");
    EXPECT_STREQ("new", buffer.text());
    writeText(buffer.text(), 255);
    EXPECT_STREQ("", buffer.text());
}

TEST(BoundedText, IsTerminatedBeforeAnythingIsAppended) {
    GuardedBuffer buffer;
    const CBoundedText text(buffer.text(), 255);
    EXPECT_STREQ("", buffer.text());
    EXPECT_EQ(0U, text.size());
    EXPECT_TRUE(buffer.untouchedBeyond(1));
}

TEST(BoundedText, SizeCountsTheCharactersThatWereKept) {
    GuardedBuffer buffer;
    CBoundedText text(buffer.text(), 6);
    EXPECT_EQ(3U, text.append("abc").size());
    EXPECT_EQ(3U, text.append("").size());
    EXPECT_EQ(6U, text.append("defgh").size());
    EXPECT_EQ(6U, text.append("i").size());
    EXPECT_STREQ("abcdef", buffer.text());
}

TEST(BoundedText, NullBufferTakesNothing) {
    writeText(nullptr, 255, "Unknown property \"", "x", "\"");
    CBoundedText text(nullptr, 255);
    EXPECT_EQ(0U, text.append("abc").size());
}

TEST(BoundedText, NullTextCountsAsEmpty) {
    GuardedBuffer buffer;
    const char* missing = nullptr;
    writeText(buffer.text(), 255, "[", missing, "]");
    EXPECT_STREQ("[]", buffer.text());
}

TEST(BoundedText, PieceMayLieInTheBufferItself) {
    GuardedBuffer buffer;
    writeText(buffer.text(), 255, "abcdef");
    writeText(buffer.text(), 255, "x", std::string_view(buffer.text(), 6));
    EXPECT_STREQ("xabcdef", buffer.text());
    EXPECT_TRUE(buffer.untouchedBeyond(8));
}

TEST(BoundedText, PercentSignsAreTextAndNoFormat) {
    GuardedBuffer buffer;
    writeText(buffer.text(), 255, "Unknown property \"", "%s%n%d 100%", "\"");
    EXPECT_STREQ("Unknown property \"%s%n%d 100%\"", buffer.text());
}

TEST(BoundedText, LongestNumberIsCutAtTheBuffersEnd) {
    GuardedBuffer buffer;
    writeText(buffer.text(), 255, 1e308);
    const std::string full =
        "10000000000000000109790636294404554174049230967731184633681068290315758540491149"
        "15371633289784946888990612496697211725156115902837431400883283070091981460460312"
        "71664502933027185697489699588559043338384466165001178426897626212945177628091195"
        "786707458122783970171784415105291802893207873272974885715430223118336.000000";
    EXPECT_EQ(full.substr(0, 255), buffer.text());
    EXPECT_TRUE(buffer.untouchedBeyond(256));
    writeText(buffer.text(), 20, 1e308);
    EXPECT_STREQ("10000000000000000109", buffer.text());
}

TEST(IntegerText, IsDecimalWithASignForNegativeNumbers) {
    EXPECT_EQ("0", written(std::int32_t{0}));
    EXPECT_EQ("-1", written(std::int32_t{-1}));
    EXPECT_EQ("42", written(std::int32_t{42}));
    EXPECT_EQ("2147483647", written(std::numeric_limits<std::int32_t>::max()));
    EXPECT_EQ("-2147483648", written(std::numeric_limits<std::int32_t>::min()));
}

TEST(FloatText, HasSixDecimals) {
    EXPECT_EQ("30.000000", written(30.0));
    EXPECT_EQ("3.750000", written(3.75));
    EXPECT_EQ("-0.100000", written(-0.1));
    EXPECT_EQ("0.033333", written(1.0 / 30.0));
    EXPECT_EQ("10000.000000", written(10000.0));
}

TEST(FloatText, RoundsToNearestAndTiesToEven) {
    EXPECT_EQ("0.007812", written(0.0078125));
    EXPECT_EQ("0.023438", written(0.0234375));
    EXPECT_EQ("0.000001", written(0.0000005000001));
    EXPECT_EQ("0.000000", written(0.0000004999999));
    EXPECT_EQ("1.000000", written(0.9999999));
}

TEST(FloatText, NegativeZeroKeepsItsSign) {
    EXPECT_EQ("0.000000", written(0.0));
    EXPECT_EQ("-0.000000", written(-0.0));
    EXPECT_EQ("-0.000000", written(-1e-300));
}

TEST(FloatText, IsNeverWrittenWithAnExponent) {
    EXPECT_EQ("100000000000000000000.000000", written(1e20));
    EXPECT_EQ("0.000000", written(DBL_MIN));
    EXPECT_EQ("9007199254740992.000000", written(9007199254740992.0));
}

TEST(FloatText, LargestNumbersAreWrittenWhole) {
    const std::string largest =
        "17976931348623157081452742373170435679807056752584499659891747680315726078002853"
        "87605895586327668781715404589535143824642343213268894641827684675467035375169860"
        "49910576551282076245490090389328944075868508455133942304583236903222948165808559"
        "332123348274797826204144723168738177180919299881250404026184124858368.000000";
    EXPECT_EQ(largest, written(DBL_MAX));
    EXPECT_EQ("-" + largest, written(-DBL_MAX));
}

TEST(FloatText, InfinityAndNotANumberAreWords) {
    EXPECT_EQ("inf", written(std::numeric_limits<double>::infinity()));
    EXPECT_EQ("-inf", written(-std::numeric_limits<double>::infinity()));
    EXPECT_EQ("nan", written(std::numeric_limits<double>::quiet_NaN()));
}

// A host's locale with a decimal comma, as far as the machine has one, and in any
// case one of our own for whatever goes through streams.
class CommaLocale {
public:
    CommaLocale() {
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "German", "de-DE"}) {
            if (std::setlocale(LC_ALL, name) != nullptr) {
                break;
            }
        }
        m_before = std::locale::global(std::locale(std::locale::classic(), new Comma));
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale() {
        std::locale::global(m_before);
        std::setlocale(LC_ALL, "C");
    }

private:
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::locale m_before;
};

TEST(FloatText, HasAPointInALocaleWithADecimalComma) {
    const CommaLocale comma;
    EXPECT_EQ("1234567.500000", written(1234567.5));
    EXPECT_EQ("1234567", written(std::int32_t{1234567}));
}

}  // namespace
