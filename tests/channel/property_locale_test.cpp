// SPDX-License-Identifier: MIT
// Numbers and keys stay as they are whatever locale the host has set.
#include <clocale>
#include <cstdlib>
#include <locale>

#include "tests/support/property_host.h"

namespace property_tests {
namespace {

// Numbers with a decimal comma and grouped thousands.
class CCommaNumbers : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

const std::string localeRig = camera(R"toml(
formats = ["Y800 (640x480)"]
framerates = [3.75, 1234.5]
[[camera.item]]
name = "GAIN İI"
Value.range = { min = -5000, max = 5000, value = 1234 }
Value.abs = { min = -0.5, max = 3000.25, value = 1234.5 }
)toml");

void expectPointsEverywhere() {
    CPropertyHost host(localeRig);
    EXPECT_EQ(host.get("framerate"), accepted("1234.500000"));
    EXPECT_EQ(host.set("framerate", "12.5"), accepted());
    EXPECT_EQ(host.get("framerate"), accepted("12.500000"));
    EXPECT_EQ(host.set("framerate", "2,5"),
              refused("The frame rate must be between 3.750000 and 1234.500000."));
    EXPECT_EQ(host.get("gain İi value range"), accepted("1234"));
    EXPECT_EQ(host.get("GAIN İI VALUE ABS"), accepted("1234.500000"));
    EXPECT_EQ(host.set("gain İi value abs", "1.25"), accepted());
    EXPECT_EQ(host.get("gain İi value abs"), accepted("1.250000"));
    EXPECT_EQ(host.set("gain İi value abs", "-1,5"),
              refused("gain İi value abs must be within -0.500000 and 3000.250000!"));
    EXPECT_EQ(host.set("gain İi value range", "6000"),
              refused("gain İi value range must be within -5000 and 5000!"));
}

class Locale : public CPropertyTest {
protected:
    void TearDown() override {
        std::setlocale(LC_ALL, "C");
        std::locale::global(std::locale::classic());
        CPropertyTest::TearDown();
    }
};

TEST_F(Locale, OfTheCLibraryChangesNothing) {
    const char* chosen = nullptr;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8",
                             "tr_TR.UTF-8", "tr_TR.utf8", "German_Germany"}) {
        chosen = chosen != nullptr ? chosen : std::setlocale(LC_ALL, name);
    }
    if (chosen == nullptr) {
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    }
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    expectPointsEverywhere();
}

TEST_F(Locale, OfTheStandardStreamsChangesNothing) {
    std::locale::global(std::locale(std::locale::classic(), new CCommaNumbers));
    expectPointsEverywhere();
}

TEST_F(Locale, OfTheStartStillAppliesAfterAChange) {
    CPropertyHost host(localeRig);
    std::locale::global(std::locale(std::locale::classic(), new CCommaNumbers));
    EXPECT_EQ(host.set("framerate", "4.25"), accepted());
    EXPECT_EQ(host.get("framerate"), accepted("4.250000"));
}

}  // namespace
}  // namespace property_tests
