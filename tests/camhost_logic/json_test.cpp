// SPDX-License-Identifier: MIT
#include "camhost/base/json.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace camhost
