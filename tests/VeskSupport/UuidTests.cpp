#include "VeskSupport/Uuid.hpp"

#include <gtest/gtest.h>
#include <set>

namespace vesk {
namespace {

constexpr const char* canonical = "0E984725-C51C-4BF4-9960-E1C80E27ABA0";

TEST(UuidTests, EitherCaseIsReadAndBothAreWritten) {
    for (const char* text :
         {canonical, "0e984725-c51c-4bf4-9960-e1c80e27aba0", "0e984725-C51c-4bF4-9960-E1C80e27ABa0"}) {
        const auto uuid = Uuid::parse(text);
        ASSERT_TRUE(uuid) << text;
        EXPECT_EQ(uuid->text(), canonical);
        EXPECT_EQ(uuid->lowercaseText(), "0e984725-c51c-4bf4-9960-e1c80e27aba0");
        EXPECT_EQ(uuid->bytes()[0], 0x0E);
        EXPECT_EQ(uuid->bytes()[15], 0xA0);
    }
}

TEST(UuidTests, NothingElseIsRead) {
    for (const char* text : {"", "0E984725-C51C-4BF4-9960-E1C80E27ABA", "0E984725-C51C-4BF4-9960-E1C80E27ABA00",
                             "0E984725C51C4BF49960E1C80E27ABA0", "{0E984725-C51C-4BF4-9960-E1C80E27ABA0}",
                             " 0E984725-C51C-4BF4-9960-E1C80E27ABA", "0E984725-C51C-4BF4-9960-E1C80E27ABAG",
                             "0E984725-C51C-4BF4-9960_E1C80E27ABA0", "0E98472-5C51C-4BF4-9960-E1C80E27ABA0",
                             "-E984725-C51C-4BF4-9960-E1C80E27ABA0", "+E984725-C51C-4BF4-9960-E1C80E27ABA0",
                             "urn:uuid:0E984725-C51C-4BF4-9960-E1C8"})
        EXPECT_FALSE(Uuid::parse(text)) << text;
}

TEST(UuidTests, RandomBytesMakeVersionFour) {
    Uuid::Bytes bytes{};
    EXPECT_EQ(Uuid::fromRandomBytes(bytes).text(), "00000000-0000-4000-8000-000000000000");
    bytes.fill(0xFF);
    EXPECT_EQ(Uuid::fromRandomBytes(bytes).text(), "FFFFFFFF-FFFF-4FFF-BFFF-FFFFFFFFFFFF");
}

TEST(UuidTests, ComparesByItsBytes) {
    const Uuid nil, other = Uuid::parse(canonical).value();
    EXPECT_EQ(nil.text(), "00000000-0000-0000-0000-000000000000");
    EXPECT_NE(nil, other);
    EXPECT_EQ(std::set({other, nil, other}).size(), 2U);
    EXPECT_LT(nil, other);
}

} // namespace
} // namespace vesk
