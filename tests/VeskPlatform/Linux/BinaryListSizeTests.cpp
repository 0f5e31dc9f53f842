#include "VeskPlatform/Linux/BinaryListSize.hpp"

#include "VeskPlatform/Linux/PropertyList.hpp"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace vesk {
namespace {

std::string bigEndian(std::uint64_t value, unsigned size) {
    std::string bytes;
    for (unsigned i = size; i > 0; --i) bytes += static_cast<char>(value >> (8 * (i - 1)) & 0xFFU);
    return bytes;
}

/// A binary list of these objects, the first on top; references have one byte, offsets two.
std::string list(const std::vector<std::string>& objects) {
    std::string bytes = "bplist00", table;
    for (const std::string& object : objects) {
        table += bigEndian(bytes.size(), 2);
        bytes += object;
    }
    const std::size_t at = bytes.size();
    return bytes + table + std::string(6, '\0') + "\2\1" + bigEndian(objects.size(), 8) + bigEndian(0, 8)
           + bigEndian(at, 8);
}

/// Arrays that each hold the next one twice, and at their end a value.
std::string doubling(int depth) {
    std::vector<std::string> objects;
    for (int i = 1; i <= depth; ++i) objects.push_back(std::string("\xA2") + std::string(2, static_cast<char>(i)));
    objects.emplace_back("\x09");
    return list(objects);
}

TEST(BinaryListSizeTests, ListsThatAreWrittenStaySmall) {
    LibplistCoder coder;
    PropertyListValue::Array items;
    for (int i = 0; i < 1000; ++i) items.push_back({std::to_string(i)});
    const PropertyListValue cases[] = {
        {true},
        {std::string(100, 'x')},
        {std::string("\u00fc")},
        {PropertyListValue::Data{std::string(1'000'000, 'x')}},
        {items},
        {PropertyListValue::Dictionary{{"a", {items}}, {"b", {PropertyListValue::Dictionary{}}}}},
    };
    for (const PropertyListValue& value : cases) EXPECT_TRUE(binaryListStaysSmall(coder.encodeBinary(value)));
}

TEST(BinaryListSizeTests, AListThatDoublesAtEachStepIsRefusedBeforeItIsMade) {
    EXPECT_TRUE(binaryListStaysSmall(doubling(10)));
    EXPECT_FALSE(binaryListStaysSmall(doubling(30)));
    EXPECT_FALSE(binaryListStaysSmall(doubling(100)));
    EXPECT_EQ(readPropertyList(doubling(30)), std::nullopt);
    EXPECT_TRUE(readPropertyList(doubling(10)));
}

TEST(BinaryListSizeTests, LargeDataThatIsNamedOftenCountsEachTime) {
    std::string many = "\xAF\x10\xFF";
    many += std::string(255, '\1');
    std::string big = std::string("\x4F\x12") + bigEndian(16'000'000, 4);
    EXPECT_FALSE(binaryListStaysSmall(list({many, big})));
    EXPECT_TRUE(binaryListStaysSmall(list({many, std::string("\x41x")})));
}

TEST(BinaryListSizeTests, MalformedListsAreRefused) {
    const std::string whole = list({std::string("\xA1\1"), "\x09"});
    ASSERT_TRUE(binaryListStaysSmall(whole));
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(binaryListStaysSmall(whole.substr(0, length)) && readPropertyList(whole.substr(0, length)))
            << length;
    EXPECT_FALSE(binaryListStaysSmall(list({std::string("\xA1\0", 2)}))) << "itself";
    EXPECT_FALSE(binaryListStaysSmall(list({std::string("\xA1\1"), std::string("\xA1\0", 2)}))) << "by another";
    EXPECT_FALSE(binaryListStaysSmall(list({"\xA1\x09"}))) << "no such object";
    EXPECT_FALSE(binaryListStaysSmall(list({"\xDF\x09"}))) << "a count that is no number";
    EXPECT_FALSE(binaryListStaysSmall(list({std::string("\xDF\x13") + bigEndian(~std::uint64_t{0}, 8)}))) << "count";
    EXPECT_FALSE(binaryListStaysSmall(list({std::string("\xAF\x13") + bigEndian(1ULL << 62, 8)}))) << "count";
}

TEST(BinaryListSizeTests, DepthHasABound) {
    std::vector<std::string> objects;
    for (int i = 1; i < 250; ++i) objects.push_back(std::string("\xA1") + static_cast<char>(i));
    objects.emplace_back("\x09");
    EXPECT_TRUE(binaryListStaysSmall(list(objects)));
    EXPECT_EQ(readPropertyList(list(objects)), std::nullopt) << "deeper than anybody writes them";
}

} // namespace
} // namespace vesk
