// SPDX-License-Identifier: MIT
#include "camhost/base/json.h"

#include <gtest/gtest.h>

#include <string>

namespace camhost {
namespace {

TEST(JsonText, MembersKeepTheirOrder) {
    CJson data;
    data.set("z", 1);
    data.set("a", true);
    data.set("z", 2.5);
    CJson list = CJson::array();
    list.add("x");
    list.add(CJson());
    data.set("list", list);
    EXPECT_EQ(data.toText(), R"({"z":2.5,"a":true,"list":["x",null]})");
}

TEST(JsonText, BytesThatAreNoUtf8AreReplaced) {
    EXPECT_EQ(CJson("K\xE4m").toText(), "\"K\xEF\xBF\xBDm\"");
}

TEST(JsonText, TextsAreReadBack) {
    std::string reason;
    const auto data = CJson::parse(R"({"b":"x","a":[1,2.5,false,null]})", reason);
    ASSERT_TRUE(data);
    EXPECT_EQ(data->find("b")->text(), "x");
    EXPECT_FALSE(data->find("c"));
    EXPECT_EQ(data->toText(), R"({"b":"x","a":[1,2.5,false,null]})");
}

TEST(JsonText, ErrorsNameLineAndColumn) {
    std::string reason;
    EXPECT_FALSE(CJson::parse("{\n \"a\": }", reason));
    EXPECT_EQ(reason.rfind("parse error at line 2, column 7", 0), 0U) << reason;
}

TEST(JsonText, DeepNestingIsRefusedAndDoesNotEndTheProgram) {
    std::string reason;
    EXPECT_TRUE(CJson::parse(std::string(32, '[') + std::string(32, ']'), reason));
    EXPECT_FALSE(CJson::parse(std::string(34, '[') + std::string(34, ']'), reason));
    EXPECT_EQ(reason, "it is nested more than 32 deep");
    EXPECT_FALSE(CJson::parse(std::string(200000, '[') + std::string(200000, ']'), reason));
    EXPECT_FALSE(CJson::parse(std::string(200000, '['), reason));
}

TEST(JsonText, TensOfThousandsOfMembersAreRefused) {
    const auto object = [](int members) {
        std::string text = "{\"\":0";
        for (int i = 1; i < members; ++i) {
            text += ",\"" + std::to_string(i) + "\":0";
        }
        return text + "}";
    };
    std::string reason;
    EXPECT_TRUE(CJson::parse(object(10000), reason));
    EXPECT_FALSE(CJson::parse(object(10001), reason));
    EXPECT_EQ(reason, "it has more than 10000 members");
    EXPECT_FALSE(CJson::parse(object(100000), reason));
    EXPECT_EQ(reason, "it has more than 10000 members");
}

TEST(JsonText, ANumberThatFitsNoDoubleIsRefused) {
    std::string reason;
    EXPECT_FALSE(CJson::parse("{\"a\":1e999}", reason));
    EXPECT_NE(reason, "");
}

}  // namespace
}  // namespace camhost
