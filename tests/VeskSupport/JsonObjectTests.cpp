#include "VeskSupport/Json.hpp"

#include <gtest/gtest.h>
#include <stdexcept>

namespace vesk {
namespace {

JsonValue number(std::int64_t value) { return {value}; }

std::string keysOf(const JsonObject& object) {
    std::string keys;
    for (const auto& [key, value] : object) keys.append(key).append(" ");
    return keys;
}

TEST(JsonObject, KeepsItsKeysInByteOrder) {
    JsonObject object{{"b", number(1)}, {"a", number(2)}, {"B", number(3)}};
    EXPECT_EQ(keysOf(object), "B a b ");
    object["aa"] = number(4);
    object.emplace("", number(5));
    object.insert_or_assign("\u00e9", number(6));
    EXPECT_EQ(keysOf(object), " B a aa b \u00e9 ");
    EXPECT_EQ(object.size(), 6u);
}

TEST(JsonObject, HoldsTheLastOfARepeatedKey) {
    const JsonObject object(
        JsonObject::Members{{"b", number(1)}, {"a", number(2)}, {"b", number(3)}, {"a", number(4)}, {"b", number(5)}});
    EXPECT_EQ(object, (JsonObject{{"a", number(4)}, {"b", number(5)}}));
    EXPECT_EQ(JsonObject(JsonObject::Members{{"a", number(1)}, {"a", number(2)}}), (JsonObject{{"a", number(2)}}));
}

TEST(JsonObject, FindsWhatItHolds) {
    JsonObject object{{"a", number(1)}, {"c", number(2)}};
    EXPECT_EQ(object.find("c")->second, number(2));
    EXPECT_EQ(object.find("b"), object.end());
    EXPECT_EQ(object.find("d"), object.end());
    EXPECT_TRUE(object.contains("a"));
    EXPECT_FALSE(object.contains("b"));
    EXPECT_EQ(std::as_const(object).at("a"), number(1));
    EXPECT_THROW(object.at("b"), std::out_of_range);
    EXPECT_TRUE(JsonObject{}.empty());
}

TEST(JsonObject, FindsTheSameInLargeOnes) {
    JsonObject object;
    for (std::int64_t i = 0; i < 100; ++i) object[std::to_string(i * 37 % 100)] = number(i * 37 % 100);
    ASSERT_EQ(object.size(), 100u);
    for (std::int64_t i = 0; i < 100; ++i) EXPECT_EQ(object.at(std::to_string(i)), number(i));
    for (const char* key : {"", "100", "5x", "x"}) EXPECT_FALSE(object.contains(key)) << key;
    EXPECT_EQ(object.erase("50"), 1u);
    EXPECT_FALSE(object.contains("50"));
}

TEST(JsonObject, AddsAndReplaces) {
    JsonObject object{{"a", number(1)}};
    EXPECT_EQ(object["b"], JsonValue{});
    EXPECT_FALSE(object.emplace("a", number(2)).second);
    EXPECT_EQ(object.at("a"), number(1));
    const auto replaced = object.insert_or_assign("a", number(3));
    EXPECT_FALSE(replaced.second);
    EXPECT_EQ(replaced.first->second, number(3));
    const auto added = object.insert_or_assign("0", number(4));
    EXPECT_TRUE(added.second);
    EXPECT_EQ(added.first->first, "0");
}

TEST(JsonObject, Removes) {
    JsonObject object{{"a", number(1)}, {"b", number(2)}, {"c", number(3)}};
    EXPECT_EQ(object.erase("b"), 1u);
    EXPECT_EQ(object.erase("b"), 0u);
    EXPECT_EQ(object.erase(object.begin())->first, "c");
    EXPECT_EQ(keysOf(object), "c ");
}

} // namespace
} // namespace vesk
