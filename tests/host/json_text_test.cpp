// SPDX-License-Identifier: MIT
#include "host/json_text.h"

#include <gtest/gtest.h>

namespace camhost {
namespace {

TEST(JsonText, MembersKeepTheirOrder) {
    CData data;
    data.set("z", 1);
    data.set("a", true);
    data.set("z", 2.5);
    data.set("list", CData::Array{CData("x"), CData()});
    EXPECT_EQ(toJsonText(data), R"({"z":2.5,"a":true,"list":["x",null]})");
}

TEST(JsonText, BytesThatAreNoUtf8AreReplaced) {
    EXPECT_EQ(toJsonText(CData("K\xE4m")), "\"K\xEF\xBF\xBDm\"");
}

TEST(JsonText, TextsAreReadBack) {
    std::string reason;
    const auto data = parseJsonText(R"({"b":"x","a":[1,2.5,false,null]})", reason);
    ASSERT_TRUE(data);
    EXPECT_EQ(data->find("b")->text(), "x");
    EXPECT_EQ(data->find("c"), nullptr);
    EXPECT_EQ(toJsonText(*data), R"({"b":"x","a":[1,2.5,false,null]})");
}

TEST(JsonText, ErrorsNameLineAndColumn) {
    std::string reason;
    EXPECT_FALSE(parseJsonText("{\n \"a\": }", reason));
    EXPECT_EQ(reason.rfind("parse error at line 2, column 7", 0), 0U) << reason;
}

}  // namespace
}  // namespace camhost
