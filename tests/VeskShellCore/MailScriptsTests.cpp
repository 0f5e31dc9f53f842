#include "VeskShellCore/MailScripts.hpp"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace vesk::VeskMailOperations {
namespace {

using namespace std::chrono_literals;

std::string golden(const std::string& name) {
    std::ifstream file(VESK_SOURCE_DIR "/tests/data/scripts/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// `text` with its one `from` as `to`.
std::string changed(std::string text, const std::string& from, const std::string& to) {
    const std::size_t place = text.find(from);
    EXPECT_NE(place, std::string::npos) << from;
    EXPECT_EQ(text.find(from, place + 1), std::string::npos) << from;
    return text.replace(place, from.size(), to);
}

/// 2026-06-03 09:00 in Berlin, and some milliseconds.
const Instant june3{std::chrono::sys_days{std::chrono::year{2026} / 6 / 3} + 7h + 250ms};

LocalCalendar berlin() { return LocalCalendar("Europe/Berlin"); }

MailScript followup(std::string_view subject, std::string_view sender, std::optional<Instant> since = june3) {
    return mailFollowupScript(since, 20, subject, sender, berlin());
}

TEST(MailScripts, TheListScriptStandsToTheByte) {
    const std::string text = golden("mail_list.applescript");
    EXPECT_EQ(mailListScript(CapabilityMailView::unread, 10).text, text);
    const std::string flagged = changed(text, "set targetView to \"unread\"\n", "set targetView to \"flagged\"\n");
    EXPECT_EQ(mailListScript(CapabilityMailView::flagged, 50).text,
              changed(flagged, "set limitValue to 10\n", "set limitValue to 50\n"));
    EXPECT_EQ(mailListScript(CapabilityMailView::recent, 10).text,
              changed(text, "set targetView to \"unread\"\n", "set targetView to \"recent\"\n"));
}

TEST(MailScripts, TheListScriptKnowsWhatItAsks) {
    const std::pair<CapabilityMailView, MailView> views[] = {{CapabilityMailView::unread, MailView::unread},
                                                             {CapabilityMailView::flagged, MailView::flagged},
                                                             {CapabilityMailView::recent, MailView::recent}};
    for (const auto& [asked, view] : views) {
        const MailScript script = mailListScript(asked, 7);
        EXPECT_EQ(script.question, MailQuestion(MailListQuestion{view, 7}));
        EXPECT_EQ(script.timeLimit, 12s);
    }
}

TEST(MailScripts, TheFollowupScriptStandsToTheByte) {
    EXPECT_EQ(followup("quarterly report", "").text, golden("mail_followup.applescript"));
}

TEST(MailScripts, TheFollowupScriptKnowsWhatItAsks) {
    const MailScript script = followup("quarterly report", "anna");
    EXPECT_EQ(script.question,
              MailQuestion(MailFollowupQuestion{
                  .cutoff = june3 - 250ms, .subjectFilter = "quarterly report", .senderFilter = "anna", .limit = 20}));
    EXPECT_EQ(script.timeLimit, 12s);
}

TEST(MailScripts, WithoutACutoffThePresentStandsInItsPlace) {
    const std::string whole = golden("mail_followup.applescript");
    const std::string start = "set cutoffDate to current date\n";
    const std::size_t place = whole.find(start) + start.size(), end = whole.find("set hasCutoff");
    const std::string without = std::string(whole).erase(place, end - place);
    const MailScript script = followup("quarterly report", "", std::nullopt);
    EXPECT_EQ(script.text, changed(without, "set hasCutoff to true\n", "set hasCutoff to false\n"));
    EXPECT_EQ(std::get<MailFollowupQuestion>(script.question).cutoff, std::nullopt);
}

TEST(MailScripts, FiltersAreCleanedAndEscaped) {
    const struct {
        std::string given, literal;
        bool has;
    } cases[] = {
        {"report", "\"report\"", true},
        {"  report \n", "\"report\"", true},
        {"a\x1f"
         "b",
         "\"a b\"", true},
        {"say \"hi\"", R"("say \"hi\"")", true},
        {R"(c:\mail)", R"("c:\\mail")", true},
        {R"(\")", R"("\\\"")", true},
        {" \t", "\"\"", false},
        {"", "\"\"", false},
    };
    const std::string text = golden("mail_followup.applescript");
    const std::string bare = changed(changed(text, "\"quarterly report\"", "\"\""), "set hasSubjectFilter to true\n",
                                     "set hasSubjectFilter to false\n");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.given);
        const std::string has = c.has ? "true\n" : "false\n";
        EXPECT_EQ(followup(c.given, "").text,
                  changed(changed(text, "\"quarterly report\"", c.literal), "set hasSubjectFilter to true\n",
                          "set hasSubjectFilter to " + has));
        EXPECT_EQ(followup("", c.given).text,
                  changed(changed(bare, "set senderFilter to \"\"", "set senderFilter to " + c.literal),
                          "set hasSenderFilter to false\n", "set hasSenderFilter to " + has));
    }
}

TEST(MailScripts, TheProbeStandsToTheByte) {
    const MailScript script = mailProbeScript();
    EXPECT_EQ(script.text, golden("mail_probe.applescript"));
    EXPECT_EQ(script.timeLimit, 8s);
    EXPECT_EQ(script.question, MailQuestion(MailProbeQuestion{}));
}

TEST(MailScripts, TheCutoffIsTheLocalTimeToTheSecond) {
    const struct {
        const char* zone;
        Instant instant;
        const char* year;
        const char* month;
        const char* day;
        const char* time;
    } cases[] = {
        {"Europe/Berlin", june3, "2026", "6", "3", "32400"},
        {"UTC", june3, "2026", "6", "3", "25200"},
        {"America/Los_Angeles", june3 - 1h, "2026", "6", "2", "82800"},
        {"UTC", Instant(std::chrono::sys_days{std::chrono::year{2027} / 1 / 1} - 1s), "2026", "12", "31", "86399"},
        {"UTC", Instant(std::chrono::sys_days{std::chrono::year{1969} / 12 / 31} + 10h + 999ms), "1969", "12", "31",
         "36000"},
        {"UTC", Instant(std::chrono::sys_days{std::chrono::year{2028} / 2 / 29}), "2028", "2", "29", "0"},
    };
    for (const auto& c : cases) {
        const std::string expected = std::string("set d to current date\nset year of d to ") + c.year
                                     + "\nset month of d to " + c.month + "\nset day of d to " + c.day
                                     + "\nset time of d to " + c.time;
        EXPECT_EQ(appleScriptCutoffDate("d", c.instant, LocalCalendar(c.zone)), expected) << c.zone;
    }
    EXPECT_EQ(appleScriptCutoffDate("d", std::nullopt, berlin()), "set d to current date");
}

} // namespace
} // namespace vesk::VeskMailOperations
