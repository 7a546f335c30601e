// SPDX-License-Identifier: MIT
// The whole table of settings of each camera of the standard rig, against approved
// lists in tests/golden. After a wanted change, run these tests once with
// VELMORA_APPROVE=1 in the environment: that writes the lists anew, for review.
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "tests/support/property_host.h"

namespace property_tests {
namespace {

using Lines = std::vector<std::string>;

std::string field(const char* name, const std::string& text) {
    return "  " + std::string(name) + " \"" + text + "\"";
}

std::string settingLine(CPropertyHost& host, const std::string& key) {
    std::string line = key + ":  type " + std::to_string(host.type(key.c_str()));
    line += field("value", host.get(key).value);
    for (const char* limit : {" min", " max"}) {
        const Answer answer = host.get(key + limit);
        if (answer.result == 0) {
            line += field(limit + 1, answer.value);
        }
    }
    for (std::int32_t i = 0; host.choice(key.c_str(), i).result == 0; ++i) {
        line += field(i == 0 ? "choices" : "or", host.choice(key.c_str(), i).value);
    }
    return line;
}

std::string fraction(double number) {
    std::ostringstream text;
    text << number;
    return text.str();
}

Lines describe(CPropertyHost& host) {
    const CVideoChannel& channel = host.channel();
    Lines lines = {
        "camera: " + std::string(channel.deviceName()),
        "serial: " + std::string(channel.serialText()),
        "size: " + std::to_string(channel.width()) + " x " + std::to_string(channel.height()),
        "contrast: " + fraction(channel.contrast()),
        "brightness: " + fraction(channel.brightness()),
        "exposure: " + fraction(channel.exposure())};
    lines.insert(lines.end(), {"", "settings"});
    for (const std::string& key : host.list("feature_")) {
        lines.push_back(settingLine(host, key));
    }
    lines.insert(lines.end(), {"", "commands"});
    for (const std::string& key : host.list("execute_")) {
        lines.push_back(key + ":  type " + std::to_string(host.type(key.c_str())));
    }
    lines.insert(lines.end(), {"", "listed by index"});
    for (const std::string& name : host.names()) {
        lines.push_back(name);
    }
    return lines;
}

Lines readLines(const std::string& path) {
    std::ifstream file(path);
    Lines lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
}

void writeLines(const std::string& path, const Lines& lines) {
    std::ofstream file(path);
    for (const std::string& line : lines) {
        file << line << '\n';
    }
}

// Approved lines that are gone with "-", new ones with "+"; what both have is left
// out. Empty where they are the same.
std::string difference(const Lines& approved, const Lines& actual) {
    std::vector<std::vector<std::size_t>> common(approved.size() + 1,
                                                 std::vector<std::size_t>(actual.size() + 1));
    for (std::size_t i = approved.size(); i-- > 0;) {
        for (std::size_t j = actual.size(); j-- > 0;) {
            common[i][j] = approved[i] == actual[j] ? common[i + 1][j + 1] + 1
                                                    : std::max(common[i + 1][j], common[i][j + 1]);
        }
    }
    std::string text;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < approved.size() || j < actual.size()) {
        if (i < approved.size() && j < actual.size() && approved[i] == actual[j]) {
            ++i;
            ++j;
        } else if (j == actual.size() ||
                   (i < approved.size() && common[i + 1][j] >= common[i][j + 1])) {
            text += "- " + approved[i++] + '\n';
        } else {
            text += "+ " + actual[j++] + '\n';
        }
    }
    return text;
}

struct StandardCamera {
    std::uint32_t index;
    const char* list;
};

class GoldenList : public CPropertyTest, public testing::WithParamInterface<StandardCamera> {};

TEST_P(GoldenList, IsAsApproved) {
    chooseRig("standard");
    CPropertyHost host(GetParam().index);
    const std::string path =
        std::string(VELMORA_SOURCE_DIR) + "/tests/golden/" + GetParam().list + ".txt";
    const Lines actual = describe(host);
    if (std::getenv("VELMORA_APPROVE") != nullptr) {
        writeLines(path, actual);
        GTEST_SKIP() << "approved anew: " << path;
    }
    const std::string changes = difference(readLines(path), actual);
    EXPECT_TRUE(changes.empty()) << "differs from " << path << "\n"
                                 << changes << "With VELMORA_APPROVE=1 the list is written anew.";
}

INSTANTIATE_TEST_SUITE_P(OfTheStandardRig, GoldenList,
                         testing::Values(StandardCamera{0, "sim_mono_23"},
                                         StandardCamera{1, "sim_colour_5"},
                                         StandardCamera{2, "sim_colour_1"},
                                         StandardCamera{3, "qrm_52"},
                                         StandardCamera{4, "sim_frame_grabber"}),
                         [](const auto& each) { return std::string(each.param.list); });

using GoldenLists = CPropertyTest;

TEST_F(GoldenLists, CoverEveryCameraOfTheStandardRig) {
    chooseRig("standard");
    const DShowLib::Grabber grabber;
    EXPECT_EQ(grabber.getAvailableVideoCaptureDevices_()->size(), 5U);
}

TEST_F(GoldenLists, ShowWhatHasChanged) {
    EXPECT_EQ(difference({"a", "b", "c"}, {"a", "b", "c"}), "");
    EXPECT_EQ(difference({"a", "b", "c"}, {"a", "x", "c", "d"}), "- b\n+ x\n+ d\n");
    EXPECT_EQ(difference({"a"}, {}), "- a\n");
    EXPECT_EQ(difference({}, {"a"}), "+ a\n");
}

}  // namespace
}  // namespace property_tests
