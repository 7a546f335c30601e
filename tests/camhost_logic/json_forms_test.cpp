// SPDX-License-Identifier: MIT
// The whole JSON document of each command, as programs read it. Those of bench, check,
// doctor, view and watch stand beside their other tests.
#include <gtest/gtest.h>

#include "camhost/base/json.h"
#include "tests/camhost_logic/camhost_fixture.h"

namespace camhost::test {
namespace {

class JsonForms : public CCamhostTest {
protected:
    std::string json(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "--json");
        return camhost(arguments).out;
    }
    // Of a command that went well.
    static std::string document(const std::string& command, const std::string& result) {
        return R"({"schema":"camhost/1","command":")" + command +
               R"(","camera":{"index":0,"serial":"1A2B","name":"SIM Mono 23"},"result":)" + result +
               ",\"exit\":0}\n";
    }

    const std::string m_file = m_folder.file("settings.json");
};

TEST_F(JsonForms, ListHasNoCameraOfItsOwn) {
    MadeUpCamera gone = ordinaryCamera();
    gone.serial = "77C01";
    gone.missing = true;
    m_system.cameras.push_back(gone);
    EXPECT_EQ(json({"list"}),
              R"({"schema":"camhost/1","command":"list","result":[)"
              R"({"index":0,"serial":"1A2B","name":"SIM Mono 23","max_width":4,"max_height":2,)"
              R"("state":"ready"},)"
              R"({"index":1,"serial":"77C01","name":"SIM Mono 23","max_width":4,"max_height":2,)"
              R"("state":"no device"}],"exit":0})"
              "\n");
}

TEST_F(JsonForms, InfoHoldsRecordAndPicture) {
    camera().exposure = 0.25;
    camera().values["videonorm"] = "PAL_B";
    EXPECT_EQ(
        json({"info"}),
        document("info", R"({"adapter":"made_up.dll","name":"SIM Mono 23","serial":"1A2B",)"
                         R"("record_size":632,"max_size":{"width":4,"height":2},"exposure":0.25,)"
                         R"J("videonorm":"PAL_B","videoformat":"Y800 (4x2)","framerate":30.0,)J"
                         R"("settings":15,"actions":2,"picture":{"width":4,"height":2,)"
                         R"("line_width":0,"pixel_type":"Mono8","pixel_type_code":0}})"));
}

TEST_F(JsonForms, ASettingHoldsWhatIsKnownOfItsKind) {
    const std::string exposure =
        R"([{"key":"exposure value abs","type":"float","text":"0.033333","value":0.033333,)"
        R"("min":0.0001,"max":30.0,"flags":["auto"],"level":"basic"}])";
    EXPECT_EQ(json({"get", "exposure value abs"}), document("get", exposure));
    EXPECT_EQ(json({"props", "exposure value*"}), document("props", exposure));
    EXPECT_EQ(json({"get", "trigger enable switch"}),
              document("get", R"([{"key":"trigger enable switch","type":"bool","text":"false",)"
                              R"("value":false,"level":"basic"}])"));
    EXPECT_EQ(json({"get", "videoformats"}),
              document("get", R"J([{"key":"videoformats","type":"text","text":"Y800 (4x2)",)J"
                              R"J("value":"Y800 (4x2)","flags":["read-only"],"level":"basic"}])J"));
    EXPECT_EQ(json({"props", "propertydialog"}),
              document("props", R"([{"key":"propertydialog","type":"command","level":"expert"}])"));
}

TEST_F(JsonForms, ChoicesAreInTheOrderOfTheAdapter) {
    const std::string format =
        R"J([{"key":"videoformat","type":"choice","text":"Y800 (4x2)","value":"Y800 (4x2)",)J"
        R"J("choices":["Y800 (4x2)","Y800 (8x4)"],"level":"basic"}])J";
    EXPECT_EQ(json({"choices", "videoformat"}), document("choices", format));
    EXPECT_EQ(
        json({"props", "-L", "*format"}),
        document("props", R"([{"key":"pixelformat","type":"choice","text":"Mono8","value":"Mono8",)"
                          R"("choices":["Mono8","Raw8","RGB24"],"level":"basic"},)" +
                              format.substr(1)));
}

TEST_F(JsonForms, CommandsAreTexts) {
    EXPECT_EQ(json({"commands"}),
              document("commands", R"(["exposure one push","propertydialog"])"));
}

TEST_F(JsonForms, ExecHoldsWhatChanged) {
    camera().effects["exposure one push"] = {"gain value range", "99"};
    EXPECT_EQ(json({"exec", "exposure one push"}),
              document("exec", R"([{"command":"exposure one push","changes":)"
                               R"([{"key":"gain value range","before":"10","after":"99"}]}])"));
}

TEST_F(JsonForms, SetAndParamsHoldChanges) {
    EXPECT_EQ(
        json({"set", "gain value range=12"}),
        document("set", R"([{"key":"gain value range","asked":"12","before":"10","after":"12",)"
                        R"("matches":true}])"));
    EXPECT_EQ(json({"params", "exposure=0.01"}),
              document("params",
                       R"([{"key":"exposure auto switch","before":"true","after":"false"},)"
                       R"({"key":"exposure value abs","before":"0.033333","after":"0.010000"}])"));
}

TEST_F(JsonForms, SaveDiffAndLoadHoldWhatTheyFound) {
    EXPECT_EQ(json({"save", m_file}),
              document("save", "{\"file\":" + CJson(m_file).toText() + ",\"settings\":8}"));
    EXPECT_EQ(json({"diff", m_file}), document("diff", "[]"));
    EXPECT_EQ(json({"load", m_file}), document("load", "[]"));
    camera().values["gain value range"] = "11";
    camera().values["hue value range"] = "1";
    camera().values.erase("trigger mode strings");
    EXPECT_EQ(json({"diff", m_file}),
              document("diff", R"([{"key":"gain value range","saved":"10","now":"11"},)"
                               R"({"key":"trigger mode strings","saved":"Edge"},)"
                               R"({"key":"hue value range","now":"1"}])"));
    camera().values["trigger mode strings"] = "Edge";
    EXPECT_EQ(
        json({"load", m_file}),
        document("load", R"([{"key":"gain value range","asked":"10","before":"11","after":"10",)"
                         R"("matches":true}])"));
}

TEST_F(JsonForms, GrabHoldsItsTotals) {
    EXPECT_EQ(json({"grab", "-n", "2", "--format", "none"}),
              document("grab", R"({"frames":2,"asked":2,"skipped":0,"seconds":0.25,"fps":8.0,)"
                               R"("timeouts":0,"lost":0,"lost_seconds":0.0,"width":4,"height":2,)"
                               R"("row_bytes":4,"pixel_type":"Mono8","files":[]})"));
    camera().pixelType = HOST_PIXEL_RAW8;
    const std::string file = m_folder.file("one.png");
    EXPECT_EQ(json({"grab", "--bayer", "rggb", "-o", file}),
              document("grab", R"({"frames":1,"asked":1,"skipped":0,"seconds":0.125,"timeouts":0,)"
                               R"("lost":0,"lost_seconds":0.0,"width":4,"height":2,"row_bytes":4,)"
                               R"("pixel_type":"Raw8","bayer":"RGGB","files":[)" +
                                   CJson(file).toText() + "]}"));
}

TEST_F(JsonForms, AFailureHasCodeMessageAndHint) {
    EXPECT_EQ(json({"set", "gain value range=12abc"}),
              R"({"schema":"camhost/1","command":"set","camera":{"index":0,"serial":"1A2B",)"
              R"("name":"SIM Mono 23"},"result":[],"error":{"code":"bad_value",)"
              R"("message":"gain value range takes a whole number, not \"12abc\"",)"
              R"("hint":"--raw hands any text to the adapter"},"exit":2})"
              "\n");
    EXPECT_EQ(json({"-c", "nobody", "info"}),
              R"({"schema":"camhost/1","command":"info","error":{"code":"camera_not_found",)"
              R"("message":"no camera \"nobody\"",)"
              R"("hint":"there are: #0 1A2B \"SIM Mono 23\""},"exit":3})"
              "\n");
}

}  // namespace
}  // namespace camhost::test
