#include "VeskShellCore/MailMatching.hpp"

#include "tests/fakes/FakeMail.hpp"

#include <gtest/gtest.h>

namespace vesk::VeskMailOperations {
namespace {

using test::FakeMail;
using Fields = std::array<std::string, 10>;

const Fields allFields{"7", "m@x", "INBOX", "Home", "Anna <a@x.org>", "Hello", "Monday", "true", "false", "Text"};

std::vector<CapabilityMailMessage> parsed(const Fields& fields) { return parseMessageRows({FakeMail::row(fields)}); }

TEST(MessageRows, EachFieldHasItsPlace) {
    const CapabilityMailMessage expected{.sourceId = "7",
                                         .messageId = "m@x",
                                         .mailbox = "INBOX",
                                         .account = "Home",
                                         .sender = "Anna <a@x.org>",
                                         .subject = "Hello",
                                         .receivedAt = "Monday",
                                         .read = true,
                                         .flagged = false,
                                         .preview = "Text"};
    EXPECT_EQ(parsed(allFields), std::vector{expected});
    Fields flagged = allFields;
    std::swap(flagged[7], flagged[8]);
    ASSERT_EQ(parsed(flagged).size(), 1U);
    EXPECT_FALSE(parsed(flagged)[0].read);
    EXPECT_TRUE(parsed(flagged)[0].flagged);
}

TEST(MessageRows, TextIsTrimmedAndEmptyTextIsAbsent) {
    Fields fields;
    fields.fill(" \t");
    fields[0] = "  7\n";
    fields[5] = " Hello  there ";
    const auto messages = parsed(fields);
    ASSERT_EQ(messages.size(), 1U);
    CapabilityMailMessage expected;
    expected.sourceId = "7";
    expected.subject = "Hello  there";
    EXPECT_EQ(messages[0], expected);
}

TEST(MessageRows, RowsThatDoNotFitAreLeftOut) {
    std::string nine = FakeMail::row(allFields);
    nine.erase(nine.rfind('\x1f'));
    Fields unnamed = allFields;
    unnamed[0] = " ";
    Fields other = allFields;
    other[0] = "8";
    const auto messages = parseMessageRows({nine, "", "no row", FakeMail::row(unnamed), FakeMail::row(other)});
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].sourceId, "8");
}

TEST(MessageRows, FurtherFieldsAreIgnored) {
    EXPECT_EQ(parseMessageRows({FakeMail::row(allFields)
                                + "\x1f"
                                  "eleventh\x1ftwelfth"}),
              parsed(allFields));
}

TEST(MessageRows, RowsKeepTheirOrder) {
    Fields second = allFields;
    second[0] = "1";
    const auto messages = parseMessageRows({FakeMail::row(allFields), FakeMail::row(second)});
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[0].sourceId, "7");
    EXPECT_EQ(messages[1].sourceId, "1");
    EXPECT_TRUE(parseMessageRows({}).empty());
}

TEST(MessageRows, OnlyTheWordTrueIsTrue) {
    const std::pair<const char*, bool> cases[] = {{"true", true}, {" TRUE ", true}, {"True", true}, {"false", false},
                                                  {"yes", false}, {"1", false},     {"", false},    {"true.", false}};
    for (const auto& [word, value] : cases) {
        Fields fields = allFields;
        fields[7] = fields[8] = word;
        EXPECT_EQ(parsed(fields)[0].read, value) << word;
        EXPECT_EQ(parsed(fields)[0].flagged, value) << word;
    }
}

TEST(Subjects, AreComparedWithoutReplyMarkersCaseAndRunsOfBlanks) {
    const std::pair<std::optional<std::string>, const char*> cases[] = {
        {std::nullopt, ""},
        {"", ""},
        {" \n", ""},
        {"Hello", "hello"},
        {"re: fwd: aw: hello", "hello"},
        {"Re: Fwd:   Budget   2026", "budget 2026"},
        {"budget 2026", "budget 2026"},
        {"SV:AW:FW:FWD:RE: x", "x"},
        {"fwd: re: re: x", "x"},
        {"Re:", ""},
        {"re :x", "re :x"},
        {"regarding: x", "regarding: x"},
        {"x re: y", "x re: y"},
        {"Antw: x", "antw: x"},
        {"a\tb\r\n c\u00a0d\u2003e", "a b c d e"},
        {"a\x1f"
         "b",
         "a b"},
        {"\u00c4RGER \u00dcBER \u0130", "\u00e4rger \u00fcber i\u0307"},
    };
    for (const auto& [subject, normalized] : cases)
        EXPECT_EQ(normalizeSubject(subject), normalized) << subject.value_or("none");
}

TEST(Addresses, AreComparedByTheMailboxInBrackets) {
    const std::pair<std::optional<std::string>, const char*> cases[] = {
        {std::nullopt, ""},
        {"  ", ""},
        {"Anna Beck <Box.One>", "box.one"},
        {"Anna Beck < Box.One > ", "box.one"},
        {" Box.One ", "box.one"},
        {"<a> <b>", "b"},
        {"<a <b>", "b"},
        {"<a> b>", "a> b"},
        {"> a <", "> a <"},
        {"a >", "a >"},
        {"< a", "< a"},
        {"Anna <>", ""},
        {"a\x1f"
         "b",
         "a b"},
        {"\u00c4@X", "\u00e4@x"},
    };
    for (const auto& [address, normalized] : cases)
        EXPECT_EQ(normalizeAddress(address), normalized) << address.value_or("none");
}

CapabilityMailMessage message(const std::string& sourceId, const std::string& sender, const std::string& subject) {
    CapabilityMailMessage made;
    made.sourceId = sourceId;
    made.messageId = sourceId + "@x";
    made.sender = sender;
    made.subject = subject;
    return made;
}

std::string matched(const std::vector<CapabilityMailMessage>& messages, std::optional<std::string> sourceId,
                    std::optional<std::string> messageId, std::optional<std::string> sender,
                    std::optional<std::string> subject) {
    std::string ids;
    for (const auto& each : matchFollowupMessages(messages, sourceId, messageId, sender, subject)) ids += each.sourceId;
    return ids;
}

const std::vector<CapabilityMailMessage> inbox{
    message("1", "Anna Beck <anna@x.org>", "Budget 2026"), message("2", "bob@x.org", "Re: budget  2026"),
    message("3", "Anna <ANNA@X.ORG>", "Budget 2026 draft"), message("4", "", "AW: Budget 2026")};

TEST(FollowupMatching, ASubjectDecidesAloneWhereOneIsGiven) {
    EXPECT_EQ(matched(inbox, {}, {}, {}, "Re: Budget 2026"), "124");
    EXPECT_EQ(matched(inbox, {}, {}, "nobody@else", "Budget 2026"), "124");
    EXPECT_EQ(matched(inbox, {}, {}, "anna@x.org", "Other"), "");
}

TEST(FollowupMatching, ASenderCountsWhereNoSubjectIsLeft) {
    EXPECT_EQ(matched(inbox, {}, {}, "anna@x.org", {}), "13");
    EXPECT_EQ(matched(inbox, {}, {}, "anna@x.org", " Re: "), "13");
    EXPECT_EQ(matched(inbox, {}, {}, "anna", {}), "13") << "a part of the address";
    EXPECT_EQ(matched(inbox, {}, {}, "to bob@x.org or carl", {}), "2") << "a text that holds the address";
    EXPECT_EQ(matched(inbox, {}, {}, "carl", {}), "");
}

TEST(FollowupMatching, NothingGivenMatchesNothing) {
    EXPECT_EQ(matched(inbox, {}, {}, {}, {}), "");
    EXPECT_EQ(matched(inbox, {}, {}, " ", " "), "");
}

TEST(FollowupMatching, AMailIsNotItsOwnReply) {
    EXPECT_EQ(matched(inbox, "2", {}, {}, "Budget 2026"), "14");
    EXPECT_EQ(matched(inbox, " 2\n", {}, {}, "Budget 2026"), "14");
    EXPECT_EQ(matched(inbox, {}, "1@x", {}, "Budget 2026"), "24");
    EXPECT_EQ(matched(inbox, "4", " 1@x ", {}, "Budget 2026"), "2");
    EXPECT_EQ(matched(inbox, "3", {}, "anna", {}), "1");
    EXPECT_EQ(matched(inbox, "", " ", {}, "Budget 2026"), "124") << "blank ones are none";
}

TEST(FollowupMatching, AMessageWithoutAMessageIdIsNotTheOneThatIsFollowed) {
    auto nameless = inbox;
    for (auto& each : nameless) each.messageId.reset();
    EXPECT_EQ(matched(nameless, {}, "1@x", {}, "Budget 2026"), "124");
    EXPECT_EQ(matched(nameless, {}, {}, {}, "Budget 2026"), "124");
}

TEST(FollowupMatching, AnEmptyMailboxInBracketsMatchesNothing) {
    EXPECT_EQ(matched({message("1", "Anna <>", "x")}, {}, {}, "anna", {}), "");
    EXPECT_EQ(matched(inbox, {}, {}, "Anna <>", {}), "");
}

} // namespace
} // namespace vesk::VeskMailOperations
