// SPDX-License-Identifier: MIT
// camhost.exe with the rigs of the folder rigs/, as docs/rig.md says to try them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "camhost/base/json.h"
#include "tests/camhost/program.h"

namespace camhost::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

Outcome withRig(const std::string& name, std::vector<std::string> arguments) {
    const auto file = std::filesystem::absolute(VELMORA_SOURCE_DIR "/rigs/" + name + ".toml");
    arguments.insert(arguments.begin(), {"--rig", utf8(file)});
    return runCamhost(arguments);
}

TEST(CamhostRigs, TwoEqualModelsAreToldApartBySerial) {
    const Outcome list = withRig("two_equal_models", {"list"});
    EXPECT_EQ(list.exit, 0);
    EXPECT_EQ(list.out,
              "#  serial  name      max size  state\n"
              "0  A1      SIM Twin  640x480   ready\n"
              "1  A2      SIM Twin  640x480   ready\n");
    EXPECT_EQ(list.err, "");
    EXPECT_THAT(withRig("two_equal_models", {"-c", "A2", "get", "gain value range"}).out,
                HasSubstr("value=20\n"));
}

TEST(CamhostRigs, TheFlakyCableLosesTheCameraTwice) {
    const Outcome outcome = withRig("flaky_cable", {"--clock", "fast", "grab", "-n", "400",
                                                    "--format", "none", "--on-loss", "10"});
    EXPECT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_THAT(outcome.out, StartsWith("done: 400 frames in "));
    EXPECT_THAT(outcome.out, HasSubstr(" lost 2 ("));
}

TEST(CamhostRigs, TheSlowTriggerMakesWaitsTimeOut) {
    const Outcome outcome = withRig("slow_trigger", {"grab", "-n", "3", "--format", "none"});
    EXPECT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_THAT(outcome.out, StartsWith("done: 3 frames in "));
    EXPECT_THAT(outcome.out, HasSubstr(", timeouts "));
    EXPECT_THAT(outcome.out, testing::Not(HasSubstr(", timeouts 0")));
}

TEST(CamhostRigs, ManySettingsAreFourHundredKeys) {
    const Outcome outcome = withRig("many_settings", {"props", "zone *", "--plain"});
    EXPECT_EQ(outcome.exit, 0) << outcome.err;
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 400);
}

TEST(CamhostRigs, TheFilmIsFoundBesideItsRig) {
    const Outcome outcome =
        withRig("film", {"--clock", "fast", "-c", "F11", "grab", "--pixelformat", "rgb24",
                         "--force", "-o", "film.ppm"});
    EXPECT_EQ(outcome.exit, 0) << outcome.err;
    const std::string picture = readFile(testFolder() / "film.ppm");
    EXPECT_THAT(picture, StartsWith("P6\n128 96\n255\n"));
    // Top left of the ramp, and its end.
    ASSERT_EQ(picture.size(), 14U + 128 * 96 * 3);
    EXPECT_EQ(picture[14], '\x00');
    EXPECT_EQ(picture[14 + 127 * 3], '\xBD');
}

}  // namespace
}  // namespace camhost::test
