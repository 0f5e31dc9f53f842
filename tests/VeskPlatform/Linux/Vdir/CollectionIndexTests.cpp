#include "VeskPlatform/Linux/Vdir/CollectionIndex.hpp"

#include "tests/VeskPlatform/Linux/Vdir/CalendarText.hpp"

#include <gtest/gtest.h>
#include <random>

namespace vesk::test {
namespace {

using vdir::CollectionIndex;
using vdir::FileHealth;
using vdir::FileSignature;

CollectionIndex sample() {
    const auto scanned = [](const std::string& lines) { return vdir::scanCalendarText(calendarOfEvent(lines)); };
    CollectionIndex index;
    index.localZone = 7;
    index.add({1, 2, 3, 4}, scanned("UID:a\nDTSTART:20260426T080000Z\n"), FileHealth::whole);
    index.add({5, 6, 7, 8}, scanned("UID:b\nDTSTART:20260426T080000Z\nRRULE:FREQ=DAILY\n"), FileHealth::whole);
    index.add({9, 10, 11, 12}, {}, FileHealth::damaged);
    index.chunks[-3] = {{0x8000000000000001, 1}};
    index.chunks[321] = {{0, 0}};
    return index;
}

TEST(CollectionIndexTests, WhatIsEncodedIsDecoded) {
    const CollectionIndex index = sample();
    const auto decoded = CollectionIndex::decoded(index.encoded());
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->encoded(), index.encoded());
    EXPECT_EQ(decoded->localZone, 7U);
    ASSERT_EQ(decoded->files.size(), 3U);
    EXPECT_EQ(decoded->files[1].signature, (FileSignature{5, 6, 7, 8}));
    EXPECT_EQ(decoded->files[2].health, FileHealth::damaged);
    EXPECT_EQ(decoded->recurringCount, 1U);
    EXPECT_EQ(decoded->chunks.at(-3)[0].days, 0x8000000000000001U);
    EXPECT_EQ(decoded->chunks.at(321)[0].known, 0U);
}

TEST(CollectionIndexTests, AnEmptyOneIsEncodedToo) {
    EXPECT_TRUE(CollectionIndex::decoded(CollectionIndex().encoded()));
}

TEST(CollectionIndexTests, EveryFlippedBitIsRefused) {
    const std::string bytes = sample().encoded();
    for (std::size_t i = 0; i < bytes.size(); ++i)
        for (int bit = 0; bit < 8; ++bit) {
            std::string damaged = bytes;
            damaged[i] = static_cast<char>(damaged[i] ^ (1 << bit));
            EXPECT_FALSE(CollectionIndex::decoded(damaged)) << "byte " << i << " bit " << bit;
        }
}

TEST(CollectionIndexTests, EveryCutAndEveryAdditionIsRefused) {
    const std::string bytes = sample().encoded();
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_FALSE(CollectionIndex::decoded(std::string_view(bytes).substr(0, length))) << length;
    EXPECT_FALSE(CollectionIndex::decoded(bytes + '\0'));
    EXPECT_FALSE(CollectionIndex::decoded(bytes + bytes));
}

TEST(CollectionIndexTests, RandomBytesAreRefused) {
    std::mt19937 random(20260426);
    for (int round = 0; round < 2000; ++round) {
        std::string bytes(random() % 300, '\0');
        for (char& c : bytes) c = static_cast<char>(random());
        EXPECT_FALSE(CollectionIndex::decoded(bytes));
    }
}

TEST(CollectionIndexTests, TheBytesOfAnotherZoneAreOtherBytes) {
    CollectionIndex other = sample();
    other.localZone = 8;
    EXPECT_NE(other.encoded(), sample().encoded());
}

TEST(CollectionIndexTests, ChunksOfDaysBeforeTheEpochRoundDown) {
    for (const auto& [day, chunk] : std::vector<std::pair<int, int>>{
             {0, 0}, {63, 0}, {64, 1}, {-1, -1}, {-64, -1}, {-65, -2}, {-128, -2}, {-129, -3}})
        EXPECT_EQ(CollectionIndex::chunkOf(day), chunk) << day;
}

TEST(CollectionIndexTests, AFileKeepsItsDaysWhenItMovesToAnotherIndex) {
    const CollectionIndex known = sample();
    CollectionIndex moved;
    moved.add({20, 0, 0, 0}, vdir::scanCalendarText(calendarOfEvent("UID:c\nDTSTART:20260101\nRRULE:FREQ=DAILY\n")),
              FileHealth::whole);
    moved.addFrom(known, 1);
    ASSERT_EQ(moved.items.size(), 2U);
    EXPECT_EQ(moved.items[1].file, 1U);
    EXPECT_EQ(moved.items[1].recurring, 1);
    ASSERT_EQ(moved.chunks.at(-3).size(), 2U);
    EXPECT_EQ(moved.chunks.at(-3)[0].known, 0U);
    EXPECT_EQ(moved.chunks.at(-3)[1].days, 0x8000000000000001U);
    EXPECT_TRUE(CollectionIndex::decoded(moved.encoded()));
}

TEST(CollectionIndexTests, FilesThatMayStillChangeUnnoticedAreForgotten) {
    constexpr std::int64_t second = 1'000'000'000, now = 1'000'000 * second + 5;
    struct Case {
        const char* name;
        std::int64_t changed;
        FileHealth health;
        bool kept;
    };
    for (const Case& c : {Case{"long ago", now - 10 * second, FileHealth::whole, true},
                          Case{"a fifth of a second ago", now - second / 5, FileHealth::whole, true},
                          Case{"just now", now - second / 20, FileHealth::whole, false},
                          Case{"in whole seconds, just now", now - 5 - 2 * second, FileHealth::whole, false},
                          Case{"in whole seconds, before", now - 5 - 4 * second, FileHealth::whole, true},
                          Case{"in the future", now + second, FileHealth::whole, false},
                          Case{"damaged long ago", now - 10 * second, FileHealth::damaged, true},
                          Case{"unreadable", now - 10 * second, FileHealth::unreadable, false}}) {
        CollectionIndex index;
        const FileSignature signature{1, 2, c.changed, 3};
        index.add(signature, {}, c.health);
        index.distrustUnsettledFiles(now);
        EXPECT_EQ(index.files[0].signature == signature, c.kept) << c.name;
    }
}

} // namespace
} // namespace vesk::test
