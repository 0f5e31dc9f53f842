#include "VeskSupport/Json.hpp"

#include <gtest/gtest.h>
#include <limits>

namespace vesk {
namespace {

std::string rewritten(std::string_view text) { return writeJson(parseJson(text)); }

TEST(JsonWriter, IndentsSortsAndSpacesColons) {
    EXPECT_EQ(rewritten(R"({"b":[1,{"c":true}],"a":null,"B":"x"})"), "{\n"
                                                                     "  \"B\" : \"x\",\n"
                                                                     "  \"a\" : null,\n"
                                                                     "  \"b\" : [\n"
                                                                     "    1,\n"
                                                                     "    {\n"
                                                                     "      \"c\" : true\n"
                                                                     "    }\n"
                                                                     "  ]\n"
                                                                     "}");
}

TEST(JsonWriter, PutsAnEmptyLineIntoEmptyListsAndObjects) {
    EXPECT_EQ(rewritten("{}"), "{\n\n}");
    EXPECT_EQ(rewritten(R"({"a":[],"b":{}})"), "{\n  \"a\" : [\n\n  ],\n  \"b\" : {\n\n  }\n}");
}

TEST(JsonWriter, EscapesWhatMustBeEscapedAndSlashes) {
    EXPECT_EQ(writeJson({std::string("a/\"\\\b\f\n\r\t\x01\x1f\x7f") + '\0' + "\u00e9\u2028"}),
              "\"a\\/\\\"\\\\\\b\\f\\n\\r\\t\\u0001\\u001f\x7f\\u0000\u00e9\u2028\"");
    EXPECT_EQ(writeJson({std::string("a/b")}, SlashStyle::plain), "\"a/b\"");
}

TEST(JsonWriter, RepairsIllFormedText) { EXPECT_EQ(writeJson({std::string("a\xff\xc3z")}), "\"a\uFFFD\uFFFDz\""); }

TEST(JsonWriter, WritesNumbersInTheirShortestExactForm) {
    EXPECT_EQ(writeJson({3.0}), "3");
    EXPECT_EQ(writeJson({-0.0}), "0");
    EXPECT_EQ(writeJson({100000.0}), "100000");
    EXPECT_EQ(writeJson({0.1}), "0.1");
    EXPECT_EQ(writeJson({1.0 / 3}), "0.3333333333333333");
    EXPECT_EQ(writeJson({std::numeric_limits<std::int64_t>::min()}), "-9223372036854775808");
    EXPECT_THROW(writeJson({std::numeric_limits<double>::infinity()}), ErrorRecord);
}

TEST(JsonReader, ReadsEachKindOfValue) {
    EXPECT_EQ(parseJson(" 7 ").value, JsonValue{std::int64_t{7}}.value);
    EXPECT_EQ(parseJson("18446744073709551615").value, JsonValue{18446744073709551615.0}.value);
    EXPECT_EQ(parseJson("\"\\u00e9\\ud83d\\ude00\"").value, JsonValue{std::string("\u00e9\U0001F600")}.value);
    EXPECT_EQ(parseJson("\xEF\xBB\xBF[]").value, JsonValue{JsonValue::Array{}}.value);
    EXPECT_EQ(rewritten(R"({"a":1,"a":2})"), "{\n  \"a\" : 2\n}");
}

TEST(JsonReader, PutsEachItemWhereItStands) {
    const JsonValue one{std::int64_t{1}}, two{std::int64_t{2}}, three{std::int64_t{3}};
    const JsonValue none{nullptr}, list{JsonValue::Array{}}, object{JsonValue::Object{}};
    EXPECT_EQ(parseJson(R"([1,[2,[],{"a":null,"b":[{}]}],3])"),
              (JsonValue{JsonValue::Array{
                  one,
                  {JsonValue::Array{two, list, {JsonValue::Object{{"a", none}, {"b", {JsonValue::Array{object}}}}}}},
                  three}}));
    EXPECT_EQ(
        parseJson(R"({"b":{"":[]},"a":{"a":1},"b":{"c":2}})"),
        (JsonValue{JsonValue::Object{{"a", {JsonValue::Object{{"a", one}}}}, {"b", {JsonValue::Object{{"c", two}}}}}}));
}

TEST(JsonReader, RefusesWhatIsNotJson) {
    for (const char* text :
         {"", " ", "{", "[1,]", "{\"a\"}", "nul", "'a'", "1 2", "\"\xff\"", "NaN", "// x\n1", "\"\\ud800\""})
        EXPECT_THROW(parseJson(text), DecodingError) << text;
}

TEST(JsonReader, SaysWhereTheDocumentIsNoLongerJson) {
    try {
        parseJson(R"({"a":[1,}])");
        FAIL();
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.description(), "The data is not valid JSON: unexpected content at byte 9.");
    }
}

TEST(JsonReader, BoundsDepthAndSize) {
    EXPECT_NO_THROW(parseJson(std::string(256, '[') + std::string(256, ']')));
    EXPECT_THROW(parseJson(std::string(257, '[') + std::string(257, ']')), DecodingError);
    EXPECT_THROW(parseJson(std::string(1000000, '[')), DecodingError);
    EXPECT_THROW(parseJson("[1, 2]", {.bytes = 5}), DecodingError);
}

} // namespace
} // namespace vesk
