#include "VeskPlatform/Linux/Vcard/CardIndex.hpp"

#include "VeskPlatform/Linux/Vdir/PackedBytes.hpp"

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using namespace vcard;
using vdir::FileHealth;

std::vector<IndexedCardFile> sample() {
    ReadCard full;
    full.uid = "uid-1";
    full.contact.givenName = "Anna";
    full.contact.middleName = "M";
    full.contact.familyName = "Schmidt";
    full.contact.nickname = "Annie";
    full.contact.organizationName = "Blue";
    full.contact.jobTitle = "Gardener";
    full.contact.departmentName = "Roses";
    full.contact.phoneNumbers = {{"home", "1"}, {std::nullopt, "2"}, {"", ""}};
    full.contact.emailAddresses = {{"work", "a@example.com"}};
    full.contact.postalAddresses.resize(1);
    full.contact.postalAddresses[0] = {"Boat", {"Road", "Town", "State", "123", "Land", "de"}};
    std::vector<IndexedCardFile> files(3);
    files[0] = {{1, -2, 3, 4}, FileHealth::whole, {full, ReadCard{}}};
    files[1] = {{5, 6, 7, 8}, FileHealth::damaged, {}};
    files[2] = {{9, 10, 11, 12}, FileHealth::whole, {ReadCard{}}};
    files[2].cards[0].uid = "";
    files[2].cards[0].isGroup = true;
    return files;
}

void expectSame(const std::vector<IndexedCardFile>& a, const std::vector<IndexedCardFile>& b) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        EXPECT_EQ(a[i].signature, b[i].signature);
        EXPECT_EQ(a[i].health, b[i].health);
        ASSERT_EQ(a[i].cards.size(), b[i].cards.size());
        for (std::size_t c = 0; c < a[i].cards.size(); ++c) {
            EXPECT_EQ(a[i].cards[c].uid, b[i].cards[c].uid);
            EXPECT_EQ(a[i].cards[c].isGroup, b[i].cards[c].isGroup);
            EXPECT_EQ(a[i].cards[c].contact, b[i].cards[c].contact);
        }
    }
}

TEST(CardIndex, WhatIsEncodedIsDecoded) {
    const auto decoded = decodedCards(encodedCards(sample()));
    ASSERT_TRUE(decoded);
    expectSame(*decoded, sample());
}

TEST(CardIndex, LargeBooksAreDecodedOnSeveralThreads) {
    std::vector<IndexedCardFile> files;
    for (int i = 0; i < 1000; ++i) {
        files.push_back(sample().front());
        files.back().cards[0].contact.givenName = std::to_string(i);
    }
    const auto decoded = decodedCards(encodedCards(files));
    ASSERT_TRUE(decoded);
    expectSame(*decoded, files);
}

TEST(CardIndex, AnEmptyBookIsEncodedToo) { EXPECT_TRUE(decodedCards(encodedCards({}))); }

TEST(CardIndex, EveryFlippedBitIsRefused) {
    const std::string bytes = encodedCards(sample());
    for (std::size_t i = 0; i < bytes.size(); ++i)
        for (int bit = 0; bit < 8; ++bit) {
            std::string damaged = bytes;
            damaged[i] = static_cast<char>(damaged[i] ^ (1 << bit));
            EXPECT_FALSE(decodedCards(damaged)) << "byte " << i << " bit " << bit;
        }
}

TEST(CardIndex, EveryCutAndEveryAdditionIsRefused) {
    const std::string bytes = encodedCards(sample());
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_FALSE(decodedCards(std::string_view(bytes).substr(0, length))) << length;
    EXPECT_FALSE(decodedCards(bytes + '\0'));
}

/// An index of one file with one card that claims to have `cards`, its checksum right all the same.
std::string claiming(std::uint32_t cards) {
    std::vector<IndexedCardFile> files(1);
    files[0].cards.resize(1);
    std::string bytes = encodedCards(files);
    constexpr std::size_t checksumAt = 8, summedFrom = 16, cardsAt = 64;
    std::memcpy(bytes.data() + cardsAt, &cards, sizeof cards);
    const std::uint64_t sum = vdir::checksum(std::string_view(bytes).substr(summedFrom));
    std::memcpy(bytes.data() + checksumAt, &sum, sizeof sum);
    return bytes;
}

TEST(CardIndex, AFalseNumberOfCardsIsRefused) {
    EXPECT_TRUE(decodedCards(claiming(1)));
    EXPECT_FALSE(decodedCards(claiming(0)));
    EXPECT_FALSE(decodedCards(claiming(2)));
    EXPECT_FALSE(decodedCards(claiming(UINT32_MAX)));
}

} // namespace
} // namespace vesk::test
