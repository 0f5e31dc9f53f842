#pragma once

#include "VeskPlatform/MailScriptRunner.hpp"
#include "VeskSupport/Text.hpp"
#include "tests/fakes/FakeMail.hpp"

#include <gtest/gtest.h>

namespace vesk::test {

/// What every MailScriptRunner owes, the text of a date and of source ids apart. `World` has `runner()` and
/// `deliver(message)`, which adds a message that is newer than all before; the mailbox "INBOX" is the inbox of an
/// account.
template <class World> class MailScriptRunnerContract : public ::testing::Test {
protected:
    using Fields = std::vector<std::string>;
    enum Field { sourceId, messageId, mailbox, account, sender, subject, receivedAt, read, flagged, preview };

    World world;

    static FakeMailMessage message(const std::string& subject, int minute = 0) {
        FakeMailMessage made;
        made.sourceId = "source-" + std::to_string(++made_);
        made.messageId = std::to_string(made_) + "@example.org";
        made.sender = "Anna Beck <anna@example.org>";
        made.subject = subject;
        made.content = "Text";
        made.received = noon() + std::chrono::minutes(minute);
        return made;
    }
    static Instant noon() {
        return Instant(std::chrono::sys_days{std::chrono::year{2026} / 6 / 3} + std::chrono::hours(12));
    }

    std::vector<Fields> rows(const MailQuestion& question) {
        const MailScriptOutcome outcome = world.runner().run({"", std::chrono::seconds(12), question});
        std::vector<Fields> result;
        const auto* descriptor = std::get_if<ScriptDescriptor>(&outcome);
        if (descriptor == nullptr || !std::holds_alternative<ScriptDescriptor::List>(descriptor->value)) {
            ADD_FAILURE() << "no list";
            return result;
        }
        for (const auto& row : std::get<ScriptDescriptor::List>(descriptor->value))
            result.push_back(split(row.value_or("no text"), '\x1f'));
        for (const Fields& fields : result) EXPECT_EQ(fields.size(), 10U);
        return result;
    }
    Fields subjects(const MailQuestion& question) {
        Fields result;
        for (const Fields& fields : rows(question)) result.push_back(fields.at(subject));
        return result;
    }
    Fields listed(MailView view, std::int64_t limit = 50) { return subjects(MailListQuestion{view, limit}); }

private:
    static inline int made_ = 0;
};
TYPED_TEST_SUITE_P(MailScriptRunnerContract);

TYPED_TEST_P(MailScriptRunnerContract, TheProbeAnswers) {
    const MailScriptOutcome outcome = this->world.runner().run({"", std::chrono::seconds(8), MailProbeQuestion{}});
    EXPECT_EQ(outcome, MailScriptOutcome(ScriptDescriptor{std::optional<std::string>("ok")}));
}

TYPED_TEST_P(MailScriptRunnerContract, AnEmptyInboxIsAnEmptyList) {
    EXPECT_TRUE(this->rows(MailListQuestion{MailView::recent, 10}).empty());
    EXPECT_TRUE(
        this->rows(MailFollowupQuestion{.cutoff = {}, .subjectFilter = {}, .senderFilter = {}, .limit = 10}).empty());
}

TYPED_TEST_P(MailScriptRunnerContract, AViewShowsItsPartOfTheInboxNewestFirst) {
    auto seen = this->message("seen", 1), marked = this->message("marked", 2), both = this->message("both", 3),
         filed = this->message("filed", 4);
    seen.read = both.read = true;
    marked.flagged = both.flagged = true;
    filed.mailbox = "Archive";
    for (const auto& each : {this->message("plain"), seen, marked, both, filed}) this->world.deliver(each);
    using Subjects = std::vector<std::string>;
    EXPECT_EQ(this->listed(MailView::recent), (Subjects{"both", "marked", "seen", "plain"}));
    EXPECT_EQ(this->listed(MailView::unread), (Subjects{"marked", "plain"}));
    EXPECT_EQ(this->listed(MailView::flagged), (Subjects{"both", "marked"}));
    EXPECT_EQ(this->listed(MailView::recent, 2), (Subjects{"both", "marked"}));
    EXPECT_EQ(this->listed(MailView::unread, 1), (Subjects{"marked"})) << "the limit counts what the view shows";
}

TYPED_TEST_P(MailScriptRunnerContract, EachFieldHasItsPlace) {
    auto whole = this->message("Hello");
    whole.flagged = true;
    this->world.deliver(whole);
    const auto rows = this->rows(MailListQuestion{MailView::recent, 1});
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_NE(rows[0][this->sourceId], "");
    EXPECT_EQ(rows[0][this->messageId], whole.messageId);
    EXPECT_EQ(rows[0][this->mailbox], "INBOX");
    EXPECT_NE(rows[0][this->account], "");
    EXPECT_EQ(rows[0][this->sender], whole.sender);
    EXPECT_EQ(rows[0][this->subject], "Hello");
    EXPECT_EQ(rows[0][this->read], "false");
    EXPECT_EQ(rows[0][this->flagged], "true");
    EXPECT_EQ(rows[0][this->preview], "Text");
}

TYPED_TEST_P(MailScriptRunnerContract, APreviewIsOneLineOfAtMost600Characters) {
    auto broken = this->message("broken", 1), longer = this->message("longer", 2),
         fitting = this->message("fitting", 3);
    broken.content = "one\ntwo\x1f"
                     "three";
    longer.content = std::string(601, 'x');
    fitting.content = std::string(599, 'x') + "y";
    for (const auto& each : {broken, longer, fitting}) this->world.deliver(each);
    const auto rows = this->rows(MailListQuestion{MailView::recent, 3});
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[2][this->preview], "one two three");
    EXPECT_EQ(rows[1][this->preview], std::string(600, 'x'));
    EXPECT_EQ(rows[0][this->preview], fitting.content);
}

TYPED_TEST_P(MailScriptRunnerContract, FiltersLookIntoEveryMailboxAndIgnoreCase) {
    auto filed = this->message("Re: BUDGET plan", 1), other = this->message("Other", 2);
    filed.mailbox = "Archive";
    other.sender = "Bob <bob@example.org>";
    for (const auto& each : {this->message("budget"), filed, other}) this->world.deliver(each);
    const auto found = [&](const char* subjectFilter, const char* senderFilter, std::int64_t limit = 10) {
        auto subjects = this->subjects(MailFollowupQuestion{
            .cutoff = {}, .subjectFilter = subjectFilter, .senderFilter = senderFilter, .limit = limit});
        std::sort(subjects.begin(), subjects.end());
        return subjects;
    };
    using Subjects = std::vector<std::string>;
    EXPECT_EQ(found("budget", ""), (Subjects{"Re: BUDGET plan", "budget"}));
    EXPECT_EQ(found("budget", "bob"), (Subjects{"Re: BUDGET plan", "budget"})) << "a subject is enough";
    EXPECT_EQ(found("", "BOB@example"), (Subjects{"Other"}));
    EXPECT_EQ(found("", "anna"), (Subjects{"Re: BUDGET plan", "budget"}));
    EXPECT_EQ(found("", ""), (Subjects{"Other", "budget"})) << "without filters, the inbox";
    EXPECT_EQ(found("nothing", ""), Subjects{});
    EXPECT_EQ(found("", "example.org", 2).size(), 2U);
}

TYPED_TEST_P(MailScriptRunnerContract, OnlyWhatCameAfterTheCutoffCounts) {
    auto at = this->message("at", 5), after = this->message("after", 5);
    *after.received += std::chrono::seconds(1);
    for (const auto& each : {this->message("before", 4), at, after}) this->world.deliver(each);
    MailFollowupQuestion question{.cutoff = at.received, .subjectFilter = {}, .senderFilter = "anna", .limit = 10};
    EXPECT_EQ(this->subjects(question), std::vector<std::string>{"after"});
    question.cutoff = after.received;
    EXPECT_TRUE(this->rows(question).empty());
}

TYPED_TEST_P(MailScriptRunnerContract, AMessageInTwoMailboxesIsSeenOnce) {
    const auto original = this->message("twice");
    auto copy = original;
    copy.mailbox = "Archive";
    copy.sourceId += "-copy";
    for (const auto& each : {original, copy}) this->world.deliver(each);
    const MailFollowupQuestion question{.cutoff = {}, .subjectFilter = "twice", .senderFilter = {}, .limit = 10};
    EXPECT_EQ(this->rows(question).size(), 1U);
}

REGISTER_TYPED_TEST_SUITE_P(MailScriptRunnerContract, TheProbeAnswers, AnEmptyInboxIsAnEmptyList,
                            AViewShowsItsPartOfTheInboxNewestFirst, EachFieldHasItsPlace,
                            APreviewIsOneLineOfAtMost600Characters, FiltersLookIntoEveryMailboxAndIgnoreCase,
                            OnlyWhatCameAfterTheCutoffCounts, AMessageInTwoMailboxesIsSeenOnce);

} // namespace vesk::test
