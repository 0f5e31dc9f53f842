#include "VeskPlatform/Linux/PropertyList.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

std::string xml(const std::string& content) {
    return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0">)" + content + "</plist>";
}

TEST(PropertyListTests, EachTypeHasItsValue) {
    const std::pair<std::string, JsonValue> cases[] = {
        {"<true/>", {true}},
        {"<false/>", {false}},
        {"<integer>7</integer>", {std::int64_t{7}}},
        {"<integer>-7</integer>", {std::int64_t{-7}}},
        {"<real>1.5</real>", {1.5}},
        {"<string>a &amp; \u00fc</string>", {std::string("a & \u00fc")}},
        {"<string/>", {std::string()}},
        {"<date>2026-01-01T00:00:00Z</date>", {}},
        {"<data>AAEC</data>", {}},
        {"<array><true/><string>b</string></array>", {JsonValue::Array{{true}, {std::string("b")}}}},
        {"<array/>", {JsonValue::Array{}}},
        {"<dict><key>b</key><dict/><key>a</key><true/></dict>",
         {JsonValue::Object{{"a", {true}}, {"b", {JsonValue::Object{}}}}}},
    };
    for (const auto& [content, value] : cases) EXPECT_EQ(parsePropertyList(xml(content)), value) << content;
}

TEST(PropertyListTests, TheBinaryFormIsRead) {
    // {"k": [true, -3, "ü"]}
    const std::string bytes(
        "\142\160\154\151\163\164\060\060\321\001\002\121\153\243\003\004\005\011\023\377\377\377\377\377\377\377\375"
        "\141\000\374\010\013\015\021\022\033\000\000\000\000\000\000\001\001\000\000\000\000\000\000\000\006\000\000"
        "\000\000\000\000\000\000\000\000\000\000\000\000\000\036",
        68);
    const JsonValue::Array list{{true}, {std::int64_t{-3}}, {std::string("\u00fc")}};
    EXPECT_EQ(parsePropertyList(bytes), (JsonValue{JsonValue::Object{{"k", {list}}}}));
}

TEST(PropertyListTests, NulsInKeysAndTextsDoNotEndTheProgram) {
    // {"a\0ü": true, "ok": "x\0ü"}, both in UTF-16
    const std::string binary(
        "\142\160\154\151\163\164\060\060\322\001\002\003\004\143\000\141\000\000\000\374\122\157\153\011\143\000\170"
        "\000\000\000\374\010\015\024\027\030\000\000\000\000\000\000\001\001\000\000\000\000\000\000\000\005\000\000"
        "\000\000\000\000\000\000\000\000\000\000\000\000\000\037",
        68);
    parsePropertyList(binary);
    const std::string nul(1, '\0');
    parsePropertyList(xml("<dict><key>a" + nul + "b</key><string>x" + nul + "y</string></dict>"));
    EXPECT_EQ(parsePropertyList(xml("<dict><key>a&#0;b</key><true/></dict>")), std::nullopt);
}

TEST(PropertyListTests, OtherBytesAreNone) {
    for (const std::string& bytes : {std::string(), std::string("plain text"), std::string("bplist00"),
                                     std::string(64, '\0'), xml("<dict><key>a</key>"), std::string("<plist>")})
        EXPECT_EQ(parsePropertyList(bytes), std::nullopt) << bytes;
}

TEST(PropertyListTests, DepthHasABound) {
    const auto nested = [](int depth) {
        std::string content = "<true/>";
        for (int i = 0; i < depth; ++i) content = "<array>" + content + "</array>";
        return xml(content);
    };
    EXPECT_TRUE(parsePropertyList(nested(60)));
    EXPECT_FALSE(parsePropertyList(nested(70)));
}

} // namespace
} // namespace vesk
