#include "VeskPlatform/Linux/Messaging/TextingService.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

using Numbers = std::vector<std::string>;

TEST(LatestNumbers, TheLatestChatComesFirstAndOnlyOnce) {
    EXPECT_EQ(latestNumbers({{"a", 1}, {"b", 3}, {"a", 4}, {"c", 2}}, 10), (Numbers{"a", "b", "c"}));
}

TEST(LatestNumbers, ChatsWithoutATimeComeLastInTheirOrder) {
    EXPECT_EQ(latestNumbers({{"x", {}}, {"a", -5}, {"y", {}}, {"b", 0}}, 10), (Numbers{"b", "a", "x", "y"}));
}

TEST(LatestNumbers, TheLimitCountsChats) {
    EXPECT_EQ(latestNumbers({{"a", 4}, {"a", 3}, {"b", 2}, {"c", 1}}, 2), (Numbers{"a", "b"}));
    EXPECT_EQ(latestNumbers({{"a", 1}}, 0), Numbers{});
}

TEST(LatestNumbers, ANumberIsOneLineAndNeverEmpty) {
    EXPECT_EQ(latestNumbers({{"", 3}, {"a\nb\x7f", 2}}, 10), (Numbers{"a b "}));
}

} // namespace
} // namespace vesk
