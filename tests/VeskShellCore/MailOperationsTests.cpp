#include "VeskShellCore/MailOperations.hpp"

#include "VeskShellCore/MailError.hpp"
#include "tests/fakes/FakePlatform.hpp"

#include <gtest/gtest.h>
#include <limits>

namespace vesk::test {
namespace {

using namespace VeskMailOperations;
using namespace std::chrono_literals;

class MailOperations : public ::testing::Test {
protected:
    FakePlatform platform;
    FakeMail& mail = platform.fakeMail;
    const Instant nine{std::chrono::sys_days{std::chrono::year{2026} / 6 / 3} + 9h};

    FakeMailMessage& add(const std::string& sourceId, const std::string& subject = "Hello") {
        FakeMailMessage message;
        message.sourceId = sourceId;
        message.subject = subject;
        message.sender = "Anna Beck <anna@x.org>";
        message.received = nine;
        return mail.messages.emplace_back(message);
    }
    CapabilityMailListResponse listed(CapabilityMailView view = CapabilityMailView::recent, std::int64_t limit = 10) {
        return listMessages(platform, view, limit, platform.bundle);
    }
    CapabilityMailFollowupCheckResponse checked(std::optional<std::string> sender, std::optional<std::string> subject,
                                                std::optional<std::string> sinceAt = {}, std::int64_t limit = 20) {
        return checkFollowup(platform, std::nullopt, std::nullopt, sender, subject, sinceAt, limit, platform.bundle);
    }
    MailFollowupQuestion asked() const { return std::get<MailFollowupQuestion>(mail.scripts.back().question); }

    static std::string ids(const std::vector<CapabilityMailMessage>& messages) {
        std::string text;
        for (const auto& message : messages) text += message.sourceId + " ";
        return text;
    }
    /// "CODE TEXT" of the MailError that listing throws.
    std::string failure() {
        try {
            listed();
        } catch (const MailError& error) {
            EXPECT_EQ(error.domain(), "VeskMailOperations");
            return std::to_string(error.code()) + " " + error.description();
        }
        return "no failure";
    }
};

TEST_F(MailOperations, AViewOfTheInboxIsListed) {
    add("1");
    add("2").read = true;
    add("3").flagged = true;
    add("4").mailbox = "Archive";
    const auto response = listed(CapabilityMailView::unread);
    EXPECT_EQ(ids(response.messages), "1 3 ");
    EXPECT_EQ(response.brokerPath, "Vesk.app");
    EXPECT_EQ(response.bundlePath, "/Applications/Vesk.app");
    EXPECT_EQ(response.view, CapabilityMailView::unread);
    EXPECT_EQ(response.limit, 10);
    EXPECT_EQ(response.detail, "Listed Apple Mail messages.");
    EXPECT_EQ(ids(listed(CapabilityMailView::flagged).messages), "3 ");
    EXPECT_EQ(ids(listed(CapabilityMailView::recent).messages), "1 2 3 ");
}

TEST_F(MailOperations, AnEmptyListSaysSo) {
    const auto response = listed();
    EXPECT_TRUE(response.messages.empty());
    EXPECT_EQ(response.detail, "No Apple Mail messages matched that view.");
}

TEST_F(MailOperations, TheLimitIsBroughtIntoItsRange) {
    const std::pair<std::int64_t, std::int64_t> listLimits[] = {
        {0, 1}, {-5, 1}, {std::numeric_limits<std::int64_t>::min(), 1}, {1, 1}, {50, 50}, {51, 50}, {999, 50}};
    for (const auto& [given, kept] : listLimits) {
        EXPECT_EQ(listed(CapabilityMailView::recent, given).limit, kept);
        EXPECT_EQ(std::get<MailListQuestion>(mail.scripts.back().question).limit, kept);
    }
    const std::pair<std::int64_t, std::int64_t> checkLimits[] = {{0, 1}, {-1, 1}, {200, 200}, {201, 200}, {7, 7}};
    for (const auto& [given, kept] : checkLimits) {
        EXPECT_EQ(checked({}, "s", {}, given).limit, kept);
        EXPECT_EQ(asked().limit, kept);
    }
}

TEST_F(MailOperations, RowsThatDoNotFitDoNotCountAsMessages) {
    mail.outcome = ScriptDescriptor{ScriptDescriptor::List{"no row", std::nullopt}};
    EXPECT_EQ(listed().detail, "No Apple Mail messages matched that view.");
}

TEST_F(MailOperations, FailuresOfTheScriptHaveTheirTexts) {
    mail.outcome = MailScriptNotMade{};
    EXPECT_EQ(failure(), "500 Unable to create Apple Mail script.");
    mail.outcome = MailScriptFailed{" Mail got an error: AppleEvent timed out.\n"};
    EXPECT_EQ(failure(), "1 Mail got an error: AppleEvent timed out.");
    for (const std::optional<std::string>& message :
         {std::optional<std::string>(), std::optional<std::string>(" \n")}) {
        mail.outcome = MailScriptFailed{message};
        EXPECT_EQ(failure(), "1 Apple Mail Automation failed.");
    }
    EXPECT_THROW(checked({}, "s"), MailError);
    EXPECT_THROW(probeAccess(platform), MailError);
}

TEST_F(MailOperations, TheProbeAsksHarmlessly) {
    probeAccess(platform);
    ASSERT_EQ(mail.scripts.size(), 1U);
    EXPECT_EQ(mail.scripts[0].question, MailQuestion(MailProbeQuestion{}));
}

TEST(MailDescriptors, AreReadAsLists) {
    using List = ScriptDescriptor::List;
    using Strings = std::vector<std::string>;
    EXPECT_EQ(asStringList({List{"a", std::nullopt, "", "b"}}), (Strings{"a", "", "b"}));
    EXPECT_EQ(asStringList({List{}}), Strings{});
    EXPECT_EQ(asStringList({std::optional<std::string>("one")}), Strings{"one"});
    EXPECT_EQ(asStringList({std::optional<std::string>("")}), Strings{});
    EXPECT_EQ(asStringList({std::optional<std::string>()}), Strings{});
}

TEST_F(MailOperations, AReplyIsFoundBySubject) {
    add("1", "Re: Budget 2026").mailbox = "Archive";
    add("2", "Budget 2026 draft");
    const auto response = checked("nobody@else", " RE: Budget  2026 ", "2026-06-03T08:59:59Z");
    EXPECT_TRUE(response.replyFound);
    EXPECT_EQ(ids(response.matchedMessages), "1 ");
    EXPECT_EQ(response.detail, "Found a matching Apple Mail reply after the follow-up checkpoint.");
    EXPECT_EQ(response.brokerPath, "Vesk.app");
    EXPECT_EQ(response.bundlePath, "/Applications/Vesk.app");
    EXPECT_EQ(asked().subjectFilter, "budget 2026");
    EXPECT_EQ(asked().senderFilter, "nobody@else");
}

TEST_F(MailOperations, AReplyIsFoundBySender) {
    add("1");
    EXPECT_EQ(ids(checked("ANNA@x.org", {}).matchedMessages), "1 ");
    EXPECT_EQ(ids(checked("The Becks <anna@x.org>", {}).matchedMessages), "1 ");
    EXPECT_EQ(asked().senderFilter, "anna@x.org");
    EXPECT_EQ(asked().subjectFilter, "");
    EXPECT_EQ(ids(checked("anna", {}).matchedMessages), "1 ");
}

TEST_F(MailOperations, NoReplyIsToldToo) {
    add("1", "Other");
    const auto response = checked({}, "Budget");
    EXPECT_FALSE(response.replyFound);
    EXPECT_TRUE(response.matchedMessages.empty());
    EXPECT_EQ(response.detail, "No matching Apple Mail reply was found after the follow-up checkpoint.");
}

TEST_F(MailOperations, OnlyTheFirstTenMatchesAreTold) {
    for (int i = 10; i < 25; ++i) add(std::to_string(i));
    const auto response = checked({}, "hello");
    EXPECT_TRUE(response.replyFound);
    EXPECT_EQ(ids(response.matchedMessages), "10 11 12 13 14 15 16 17 18 19 ");
    mail.messages.resize(10);
    EXPECT_EQ(checked({}, "hello").matchedMessages.size(), 10U);
}

TEST_F(MailOperations, TheFollowedMessageIsNeverAmongTheMatches) {
    add("1");
    add("2").messageId = "two@x";
    const auto check = [&](std::optional<std::string> sourceId, std::optional<std::string> messageId) {
        return checkFollowup(platform, sourceId, messageId, {}, "Hello", {}, 20, platform.bundle);
    };
    EXPECT_EQ(ids(check("1", {}).matchedMessages), "2 ");
    EXPECT_EQ(ids(check({}, "two@x").matchedMessages), "1 ");
    const auto response = check(" 1 ", "two\x1f@x\n");
    EXPECT_EQ(response.sourceId, "1");
    EXPECT_EQ(response.messageId, "two @x");
}

TEST_F(MailOperations, ArgumentsAreToldCleaned) {
    const auto response = checked(" Anna\x1f<A@x> ", " Re: Hello\n", " garbage ");
    EXPECT_EQ(response.sender, "Anna <A@x>");
    EXPECT_EQ(response.subject, "Re: Hello");
    EXPECT_EQ(response.checkedSinceAt, " garbage ");
    EXPECT_EQ(response.sourceId, std::nullopt);
    EXPECT_EQ(checked(" ", "s").sender, std::nullopt);
    EXPECT_EQ(checked({}, "s").checkedSinceAt, std::nullopt);
}

TEST_F(MailOperations, TheCutoffIsReadAsATimeOrNotAtAll) {
    const std::pair<std::optional<std::string>, std::optional<Instant>> cases[] = {
        {"2026-06-03T09:00:00Z", nine},
        {" 2026-06-03T11:00:00+02:00\n", nine},
        {"2026-06-03T09:00:00.750Z", nine},
        {"garbage", std::nullopt},
        {"2026-06-03", std::nullopt},
        {"2026-06-03 09:00", std::nullopt},
        {"", std::nullopt},
        {"  ", std::nullopt},
        {std::nullopt, std::nullopt},
    };
    for (const auto& [text, cutoff] : cases) {
        SCOPED_TRACE(text.value_or("none"));
        EXPECT_EQ(checked({}, "s", text).checkedSinceAt, text);
        EXPECT_EQ(asked().cutoff, cutoff);
        const std::string flag = cutoff ? "set hasCutoff to true\n" : "set hasCutoff to false\n";
        EXPECT_NE(mail.scripts.back().text.find(flag), std::string::npos);
    }
}

TEST_F(MailOperations, TheCutoffStandsInTheUsersTime) {
    platform.fakeLocaleSettings.zone = "Asia/Kolkata";
    checked({}, "s", "2026-06-03T20:00:05Z");
    const std::string statements = "set year of cutoffDate to 2026\nset month of cutoffDate to 6\n"
                                   "set day of cutoffDate to 4\nset time of cutoffDate to 5405\n";
    EXPECT_NE(mail.scripts.back().text.find(statements), std::string::npos) << mail.scripts.back().text;
}

TEST_F(MailOperations, AMessageOfTheCutoffIsNoReplyAndOneASecondLaterIs) {
    add("1").received = nine;
    EXPECT_FALSE(checked({}, "hello", "2026-06-03T09:00:00Z").replyFound);
    mail.messages[0].received = nine + 1s;
    EXPECT_TRUE(checked({}, "hello", "2026-06-03T09:00:00Z").replyFound);
    mail.messages[0].received.reset();
    EXPECT_FALSE(checked({}, "hello", "2026-06-03T09:00:00Z").replyFound);
    EXPECT_TRUE(checked({}, "hello").replyFound);
}

TEST_F(MailOperations, OddSubjectsDoNotBreakTheScript) {
    const std::string subject = R"(say "hi" \ now)";
    add("1", subject);
    EXPECT_TRUE(checked({}, subject).replyFound);
    EXPECT_NE(mail.scripts.back().text.find(R"(set subjectFilter to "say \"hi\" \\ now")"), std::string::npos);
}

TEST_F(MailOperations, ABareExecutableHasNoBundlePath) {
    const Bundle bare{.path = "/opt/bin", .executablePath = "/opt/bin/broker", .resourcesPath = {}};
    EXPECT_EQ(listMessages(platform, CapabilityMailView::recent, 1, bare).brokerPath, "bin");
    EXPECT_EQ(listMessages(platform, CapabilityMailView::recent, 1, bare).bundlePath, std::nullopt);
}

} // namespace
} // namespace vesk::test
