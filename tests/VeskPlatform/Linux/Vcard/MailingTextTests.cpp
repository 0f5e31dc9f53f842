#include "VeskPlatform/Linux/Vcard/MailingText.hpp"

#include <gtest/gtest.h>

namespace vesk::vcard {
namespace {

TEST(MailingTextTests, TheCityLineFollowsTheCountry) {
    struct Case {
        const char *code, *current, *expected;
    };
    const Case cases[] = {
        {"DE", "US", "Street 1\n12345 City State\nLand"}, {"de", "US", "Street 1\n12345 City State\nLand"},
        {"FR", "", "Street 1\n12345 City State\nLand"},   {"US", "DE", "Street 1\nCity State 12345\nLand"},
        {"us", "DE", "Street 1\nCity State 12345\nLand"}, {" ca ", "", "Street 1\nCity State 12345\nLand"},
        {"AU", "", "Street 1\nCity State 12345\nLand"},   {"GB", "", "Street 1\nCity State 12345\nLand"},
        {"IE", "", "Street 1\nCity State 12345\nLand"},   {"IN", "", "Street 1\nCity 12345 State\nLand"},
        {"", "US", "Street 1\nCity State 12345\nLand"},   {"XX", "us", "Street 1\nCity State 12345\nLand"},
        {"", "", "Street 1\n12345 City State\nLand"},     {"XX", "XX", "Street 1\n12345 City State\nLand"},
        {"A", "US", "Street 1\nCity State 12345\nLand"},  {"Germany", "US", "Street 1\nCity State 12345\nLand"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(mailingText({"Street 1", "City", "State", "12345", "Land", c.code}, c.current), c.expected)
            << c.code << "/" << c.current;
}

TEST(MailingTextTests, PartsThatAreAbsentLeaveNothing) {
    EXPECT_EQ(mailingText({"", "Berlin", "", "10115", "", "DE"}, ""), "10115 Berlin");
    EXPECT_EQ(mailingText({"", "Berlin", "", "", "", "DE"}, ""), "Berlin");
    EXPECT_EQ(mailingText({"", "Austin", "", "73301", "", "US"}, ""), "Austin 73301");
    EXPECT_EQ(mailingText({"Street", "", "", "", "Land", "DE"}, ""), "Street\nLand");
    EXPECT_EQ(mailingText({" Street ", " ", "", " ", "", ""}, ""), "Street");
    EXPECT_EQ(mailingText({"House\nStreet", "London", "", "SW1A 2AA", "England", "gb"}, ""),
              "House\nStreet\nLondon SW1A 2AA\nEngland");
    EXPECT_EQ(mailingText({}, "DE"), "");
}

} // namespace
} // namespace vesk::vcard
