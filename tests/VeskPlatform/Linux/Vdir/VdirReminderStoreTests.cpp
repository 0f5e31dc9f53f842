#include "VeskPlatform/Linux/Vdir/VdirReminderStore.hpp"

#include "VeskPlatform/Linux/Vdir/FileReplacement.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/support/Privileges.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

std::string calendar(const std::string& inner) { return "BEGIN:VCALENDAR\nVERSION:2.0\n" + inner + "END:VCALENDAR\n"; }
std::string todo(const std::string& lines) { return calendar("BEGIN:VTODO\n" + lines + "END:VTODO\n"); }

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

/// The clock stands at 2026-04-26 08:30 UTC.
struct VdirReminderStoreTests : testing::Test {
    TemporaryFolder folder;
    FakeClock clock;
    std::vector<std::string> logged;
    std::string zone = "Europe/Berlin";

    std::string root() const { return folder / "reminders"; }
    std::string write(const std::string& name, const std::string& bytes) const {
        return folder.write("reminders/" + name, bytes);
    }
    std::string read(const std::string& name) const { return folder.read("reminders/" + name); }
    VdirReminderStore store() {
        return {{root(), zone, [this](const std::string& line) { logged.push_back(line); }}, clock};
    }
    std::vector<Reminder> all(const std::string& list = "home") { return store().reminders(list, 10s).value(); }
    std::vector<std::string> identifiers(const std::string& list = "home") {
        std::vector<std::string> result;
        for (const Reminder& reminder : all(list)) result.push_back(reminder.identifier);
        return result;
    }
    std::vector<std::string> names(const std::string& list = "home") const {
        std::vector<std::string> result;
        for (const auto& entry : fs::directory_iterator(root() + "/" + list)) result.push_back(entry.path().filename());
        std::ranges::sort(result);
        return result;
    }
};

std::string dueText(const Reminder& reminder) {
    if (!reminder.due) return "none";
    const DueComponents& due = *reminder.due;
    std::string text = std::to_string(*due.year) + "-" + std::to_string(*due.month) + "-" + std::to_string(*due.day);
    if (due.hour) text += " " + std::to_string(*due.hour) + ":" + std::to_string(*due.minute);
    return text + (due.timeZone ? " " + *due.timeZone : "");
}

TEST_F(VdirReminderStoreTests, DueDatesAreRead) {
    const std::pair<const char*, const char*> cases[] = {
        {"DUE;VALUE=DATE:20260426\n", "2026-4-26"},
        {"DUE:20260426T100000Z\n", "2026-4-26 12:0 Europe/Berlin"},
        {"DUE:20260426T100000\n", "2026-4-26 10:0"},
        {"DUE;TZID=America/New_York:20260426T100000\n", "2026-4-26 16:0 Europe/Berlin"},
        {"DUE;TZID=/vendor/Europe/Berlin:20260426T100000\n", "2026-4-26 10:0 Europe/Berlin"},
        {"DUE;VALUE=DATE:20260230\n", "none"},
        {"DUE:99999999T999999Z\n", "none"},
        {"DUE:00000000T000000Z\n", "none"},
        {"DUE:20261301T100000Z\n", "none"},
        {"DUE;VALUE=DATE:00000101\n", "none"},
        {"DUE;VALUE=DATE:00010101\n", "1-1-1"},
        {"DUE;VALUE=DATE:99991231\n", "9999-12-31"},
        {"DUE:99991231T120000Z\n", "9999-12-31 13:0 Europe/Berlin"},
        {"DUE:99991231T235959Z\n", "10000-1-1 0:59 Europe/Berlin"},
        {"DUE:20260426T250000Z\n", "none"},
        {"DUE;TZID=Nowhere:20260426T100000\n", "2026-4-26 10:0 Europe/Berlin"},
        {"DUE;TZID=:20260426T100000\n", "2026-4-26 10:0 Europe/Berlin"},
        {"DUE:nonsense\n", "none"},
        {"DUE:\n", "none"},
        {"", "none"},
    };
    for (const auto& [lines, expected] : cases) {
        write("home/a.ics", todo(std::string("UID:a\n") + lines));
        ASSERT_EQ(all().size(), 1U) << lines;
        EXPECT_EQ(dueText(all()[0]), expected) << lines;
    }
}

TEST_F(VdirReminderStoreTests, CompletionIsRead) {
    const std::pair<const char*, bool> cases[] = {
        {"STATUS:COMPLETED\n", true},
        {"COMPLETED:20260101T000000Z\n", true},
        {"STATUS:NEEDS-ACTION\n", false},
        {"STATUS:IN-PROCESS\n", false},
        {"STATUS:CANCELLED\n", false},
        {"", false},
        {"status:completed\n", true},
        {"STATUS;X-A=\"b:c\":COMP\n LETED\n", true},
        {"COMPLETED:nonsense\n", false},
        {"STATUS:NEEDS-ACTION\nSTATUS:COMPLETED\n", false},
        {"BEGIN:VALARM\nSTATUS:COMPLETED\nEND:VALARM\n", false},
    };
    for (const auto& [lines, expected] : cases) {
        write("home/a.ics", todo(std::string("UID:a\n") + lines));
        EXPECT_EQ(all().at(0).completed, expected) << lines;
    }
}

TEST_F(VdirReminderStoreTests, FieldsAreRead) {
    write("home/a.ics", todo("UID:a\nSUMMARY:One\\, two\nDESCRIPTION:x\\ny\nCREATED:20260101T000000Z\n"
                             "LAST-MODIFIED:20260102T000000Z\nCOMPLETED:20260103T000000Z\n"));
    const auto day = [](unsigned d) { return Instant{std::chrono::sys_days{std::chrono::year{2026} / 1 / d}}; };
    const Reminder reminder = all().at(0);
    EXPECT_EQ(reminder.title, "One, two");
    EXPECT_EQ(reminder.notes, "x\ny");
    EXPECT_EQ(reminder.created, day(1));
    EXPECT_EQ(reminder.lastModified, day(2));
    EXPECT_EQ(reminder.completionDate, day(3));
    EXPECT_EQ(reminder.listIdentifier, "home");
}

TEST_F(VdirReminderStoreTests, FieldsAreReadHoweverTheirLinesLook) {
    write("home/a.ics", todo("UID:a\nBEGIN:VALARM\nDESCRIPTION:alarm\nSUMMARY:alarm\nEND:VALARM\nSUMM\n ARY;LANGUAGE=\n"
                             " de:Gr\n öße\nX-NOTES:x\ndescription:first\nDESCRIPTION:second\n"
                             "CREATED;VALUE=DATE-TIME:20260101\n T000000Z\nCREATED:20260105T000000Z\n"
                             "LAST-MODIFIED:nonsense\n"));
    const Reminder reminder = all().at(0);
    EXPECT_EQ(reminder.title, "Größe");
    EXPECT_EQ(reminder.notes, "first");
    EXPECT_EQ(reminder.created, Instant{std::chrono::sys_days{std::chrono::year{2026} / 1 / 1}});
    EXPECT_EQ(reminder.lastModified, std::nullopt);
}

TEST_F(VdirReminderStoreTests, WhatIsNoTodoOfItsOwnIsNotListed) {
    write("home/event.ics", calendar("BEGIN:VEVENT\nUID:e\nDTSTART:20260426T100000Z\nEND:VEVENT\n"));
    write("home/nameless.ics", todo("SUMMARY:x\n"));
    write("home/override.ics", calendar("BEGIN:VTODO\nUID:a\nEND:VTODO\nBEGIN:VTODO\nUID:a\n"
                                        "RECURRENCE-ID:20260426T100000Z\nEND:VTODO\n"));
    write("home/twice.ics", todo("UID:a\nSUMMARY:second\n"));
    write("home/cut.ics", "BEGIN:VCALENDAR\nBEGIN:VTODO\nUID:whole\nEND:VTODO\nBEGIN:VTODO\nUID:cut\nSUMM");
    write("home/empty.ics", "");
    EXPECT_THAT(identifiers(), ElementsAre("whole", "a"));
    EXPECT_THAT(logged, ElementsAre("reminder-store files passed-over kind=damaged count=2"));
    EXPECT_EQ(store().reminder("a")->title, std::nullopt); // the first by file name
}

TEST_F(VdirReminderStoreTests, ATodoWithTwoIdentifiersHasTheFirst) {
    const std::string text = todo("UID:first\nUID:second\nSUMMARY:x\n");
    write("home/a.ics", text);
    EXPECT_THAT(identifiers(), ElementsAre("first"));
    EXPECT_FALSE(store().reminder("second"));
    VdirReminderStore opened = store();
    Reminder reminder = opened.reminder("first").value();
    reminder.title = "y";
    opened.save(reminder);
    EXPECT_THAT(read("home/a.ics"), HasSubstr("UID:first\nUID:second\nSUMMARY:y\n"));
}

TEST_F(VdirReminderStoreTests, ATodoThatVanishedIsGoneForEveryChange) {
    write("home/displayname", "Home");
    const std::string path = write("home/a.ics", todo("UID:a\n"));
    VdirReminderStore opened = store();
    Reminder reminder = opened.reminder("a").value();
    fs::remove(path);
    reminder.title = "x";
    for (const auto& change : {std::function<void()>([&] { opened.save(reminder); }),
                               std::function<void()>([&] { opened.remove(reminder); })}) {
        try {
            change();
            ADD_FAILURE() << "changed what is not there";
        } catch (const ErrorRecord& error) {
            EXPECT_EQ(error.code(), 404) << error.description();
        }
    }
    EXPECT_THAT(names(), ElementsAre("displayname"));
}

TEST_F(VdirReminderStoreTests, SurveyCountsAndNames) {
    EXPECT_EQ(VdirReminderStore::survey(root()).collections, 0U);
    write("home/a.ics", todo("UID:a\n"));
    write("home/event.ics", calendar("BEGIN:VEVENT\nUID:e\nEND:VEVENT\n"));
    write("home/notes.txt", "x");
    const std::string nameless = write("home/nameless.ics", todo("SUMMARY:x\n"));
    const std::string cut = write("account/work/cut.ics", "BEGIN:VCALENDAR\nBEGIN:VTODO\nUID:cut\nSUMM");
    const std::string secret = write("account/work/secret.ics", todo("UID:b\n"));
    const std::string closed = root() + "/closed";
    write("closed/a.ics", todo("UID:c\n"));
    fs::permissions(secret, fs::perms::none);
    fs::permissions(closed, fs::perms::none);
    {
        const WithoutPrivileges ordinary;
        const VdirSurvey survey = VdirReminderStore::survey(root());
        EXPECT_EQ(survey.collections, 2U);
        EXPECT_EQ(survey.files, 5U);
        EXPECT_THAT(survey.damagedFiles, ElementsAre(cut, nameless));
        EXPECT_THAT(survey.unreadableFiles, ElementsAre(secret));
        EXPECT_THAT(survey.unreadableFolders, ElementsAre(closed));
    }
    fs::permissions(closed, fs::perms::owner_all);
    folder.write("file", "x");
    EXPECT_THROW(VdirReminderStore::survey(folder / "file"), PosixError);
}

TEST_F(VdirReminderStoreTests, AListWithoutAnAnswerInTimeIsNone) {
    write("home/a.ics", todo("UID:a\n"));
    EXPECT_FALSE(store().reminders("home", -1s));
}

TEST_F(VdirReminderStoreTests, ListsTellTheirSource) {
    write("home/displayname", "Home\n");
    write("local/errands/displayname", "Errands");
    const auto lists = store().lists();
    ASSERT_EQ(lists.size(), 2U);
    EXPECT_EQ(lists[0], (ReminderList{"home", "Home", "local"}));
    EXPECT_EQ(lists[1], (ReminderList{"local/errands", "Errands", "account/local"}));
    const auto sources = store().sources();
    ASSERT_EQ(sources.size(), 2U);
    EXPECT_EQ(sources[0].title, "On This Computer");
    EXPECT_EQ(sources[1].title, "local");
    EXPECT_EQ(sources[1].type, 0);
}

TEST_F(VdirReminderStoreTests, NewListsGetAFolderOfTheirOwn) {
    struct Case {
        const char *title, *source, *identifier;
    };
    write("work/errands/displayname", "Errands");
    const Case cases[] = {
        {"Vesk Todos", "local", "vesk-todos"},
        {"Vesk Todos", "local", "vesk-todos-2"},
        {"../..//etc", "local", "etc"},
        {"...", "local", "list"},
        {"Vesk Todos", "account/work", "work/vesk-todos"},
    };
    for (const Case& c : cases) {
        const ReminderList list = store().createList(c.title, c.source);
        EXPECT_EQ(list, (ReminderList{c.identifier, c.title, c.source}));
        EXPECT_THAT(names(c.identifier), ElementsAre("displayname"));
    }
    EXPECT_EQ(store().lists().size(), 6U);
    EXPECT_THROW(store().createList("x", "account/none"), PosixError);
}

TEST_F(VdirReminderStoreTests, AFailedListLeavesNothing) {
    write("home/displayname", "Home");
    fs::permissions(root(), fs::perms(0500));
    {
        const WithoutPrivileges ordinary;
        try {
            store().createList("Vesk Todos", "local");
            ADD_FAILURE();
        } catch (const PosixError& error) {
            EXPECT_EQ(error.code(), EACCES);
        }
    }
    fs::permissions(root(), fs::perms::owner_all);
    EXPECT_THAT(names(""), ElementsAre("home"));
}

TEST_F(VdirReminderStoreTests, TheDefaultListIsTheFirstThatCanBeWritten) {
    write("a/displayname", "A");
    write("b/displayname", "B");
    fs::permissions(root() + "/a", fs::perms(0500));
    {
        const WithoutPrivileges ordinary;
        EXPECT_EQ(store().defaultList()->identifier, "b");
        Reminder reminder;
        reminder.listIdentifier = "a";
        EXPECT_THROW(store().save(reminder), PosixError);
    }
    fs::permissions(root() + "/a", fs::perms::owner_all);
    EXPECT_THAT(names("a"), ElementsAre("displayname"));
}

TEST_F(VdirReminderStoreTests, NewTodosAreWritten) {
    write("home/displayname", "Home");
    Reminder reminder;
    reminder.listIdentifier = "home";
    reminder.title = "Milk; bread";
    reminder.notes = "a\nb";
    struct Case {
        DueComponents due;
        std::string zone, line;
    };
    DueComponents date;
    date.year = 2026, date.month = 10, date.day = 25;
    DueComponents berlin = date;
    berlin.hour = 9, berlin.minute = 5, berlin.timeZone = "Europe/Berlin";
    DueComponents twice = berlin, universal = berlin, floating = berlin;
    twice.hour = 2;
    universal.timeZone = "UTC";
    floating.timeZone.reset();
    for (const auto& [due, line] :
         {std::pair(date, "DUE;VALUE=DATE:20261025\r\n"),
          std::pair(berlin, "DUE;TZID=Europe/Berlin:20261025T090500\r\n"), std::pair(twice, "DUE:20261025T000500Z\r\n"),
          std::pair(universal, "DUE:20261025T090500Z\r\n"), std::pair(floating, "DUE:20261025T090500\r\n")}) {
        reminder.due = due;
        const Reminder saved = store().save(reminder);
        const std::string text = read("home/" + saved.identifier + ".ics");
        EXPECT_THAT(text, HasSubstr(line));
        EXPECT_EQ(text.find("BEGIN:VTIMEZONE") != std::string::npos, text.find("TZID=") != std::string::npos) << text;
        EXPECT_THAT(text, HasSubstr("CREATED:20260426T083000Z\r\nLAST-MODIFIED:20260426T083000Z\r\n"
                                    "SUMMARY:Milk\\; bread\r\nDESCRIPTION:a\\nb\r\n"));
        EXPECT_THAT(text, HasSubstr("\r\nSTATUS:NEEDS-ACTION\r\nEND:VTODO\r\n"));
        EXPECT_EQ(store().reminder(saved.identifier), saved);
    }
    reminder.due->month = 13;
    EXPECT_THROW(store().save(reminder), ErrorRecord);
    EXPECT_EQ(all().size(), 5U);
}

/// As programs write them: folded lines, alarms, subtasks, properties of their own, line ends of both kinds.
const std::string todoText = "BEGIN:VCALENDAR\r\nPRODID:-//other//\r\nVERSION:2.0\r\nBEGIN:VTODO\r\n"
                             "DTSTAMP:20250101T000000Z\r\nUID:a\r\nRELATED-TO;RELTYPE=PARENT:b\r\nSUMMARY:Mi\r\n lk\r\n"
                             "SEQUENCE:7\r\nX-APPLE-SORT-ORDER:5\r\nCATEGORIES:one,\r\n  two\r\n"
                             "LAST-MODIFIED:20250101T000000Z\r\nDUE;TZID=Europe/Berlin:20260426T100000\r\n"
                             "BEGIN:VALARM\r\nACTION:DISPLAY\r\nSUMMARY:alarm\r\nTRIGGER:-PT15M\r\nEND:VALARM\r\n"
                             "X-BYTES:\xFF\xFE\r\nEND:VTODO\r\nEND:VCALENDAR\r\n";

struct Edit {
    const char* name;
    std::function<void(Reminder&)> change;
    std::vector<std::pair<std::string, std::string>> replacements;
};

TEST_F(VdirReminderStoreTests, AChangeTouchesOnlyItsOwnProperties) {
    const std::string beforeAlarm = "20260426T100000\r\nBEGIN:VALARM";
    const std::string dueLine = "DUE;TZID=Europe/Berlin:20260426T100000\r\n";
    const Edit edits[] = {
        {"title", [](Reminder& r) { r.title = "Bread"; }, {{"SUMMARY:Mi\r\n lk", "SUMMARY:Bread"}}},
        {"notes",
         [](Reminder& r) { r.notes = "n"; },
         {{beforeAlarm, "20260426T100000\r\nDESCRIPTION:n\r\nBEGIN:VALARM"}}},
        {"no due date", [](Reminder& r) { r.due.reset(); }, {{dueLine, ""}}},
        {"a day",
         [](Reminder& r) { r.due->hour.reset(), r.due->minute.reset(); },
         {{dueLine, "DUE;VALUE=DATE:20260426\r\n"}}},
        {"completed",
         [](Reminder& r) { r.completed = true; },
         {{beforeAlarm, "20260426T100000\r\nSTATUS:COMPLETED\r\nCOMPLETED:20260426T083000Z\r\nPERCENT-COMPLETE:100\r\n"
                        "BEGIN:VALARM"}}},
    };
    for (const Edit& edit : edits)
        for (const bool bare : {false, true}) {
            const auto lineEnds = [&](std::string text) {
                if (bare) std::erase(text, '\r');
                return text;
            };
            const std::string path = write("home/some name.ics", lineEnds(todoText));
            fs::permissions(path, fs::perms(0640));
            VdirReminderStore opened = store();
            Reminder reminder = opened.reminder("a").value();
            edit.change(reminder);
            const Reminder saved = opened.save(reminder);
            std::string expected = todoText;
            for (const auto& [from, to] : edit.replacements) expected = replaced(expected, from, to);
            expected = replaced(expected, "DTSTAMP:20250101T000000Z", "DTSTAMP:20260426T083000Z");
            expected = replaced(expected, "MODIFIED:20250101T000000Z", "MODIFIED:20260426T083000Z");
            EXPECT_EQ(read("home/some name.ics"), lineEnds(expected)) << edit.name;
            EXPECT_EQ(folder.mode("reminders/home/some name.ics"), 0640U);
            EXPECT_EQ(store().reminder("a"), saved) << edit.name;
            EXPECT_THAT(names(), ElementsAre("some name.ics"));
        }
}

TEST_F(VdirReminderStoreTests, ReopeningTakesTheCompletionAway) {
    write("home/a.ics", todo("UID:a\nSTATUS:COMPLETED\nPERCENT-COMPLETE:100\nCOMPLETED:20260101T000000Z\nX-A:1\n"));
    VdirReminderStore opened = store();
    Reminder reminder = opened.reminder("a").value();
    reminder.completed = false;
    reminder.completionDate.reset();
    opened.save(reminder);
    EXPECT_EQ(read("home/a.ics"), todo("UID:a\nSTATUS:NEEDS-ACTION\nX-A:1\nDTSTAMP:20260426T083000Z\n"
                                       "LAST-MODIFIED:20260426T083000Z\n"));
}

TEST_F(VdirReminderStoreTests, ANewZoneBringsItsDefinition) {
    write("home/a.ics", todo("UID:a\n"));
    VdirReminderStore opened = store();
    Reminder reminder = opened.reminder("a").value();
    reminder.due = DueComponents{2026, 7, 1, 9, 0, std::nullopt, "Europe/Berlin"};
    EXPECT_EQ(dueText(opened.save(reminder)), "2026-7-1 9:0 Europe/Berlin");
    const std::string text = read("home/a.ics");
    EXPECT_THAT(text, HasSubstr("VERSION:2.0\nBEGIN:VTIMEZONE\nTZID:Europe/Berlin\n"));
    EXPECT_EQ(text.find('\r'), std::string::npos);
    reminder.due->hour = 10;
    opened.save(reminder);
    const std::string again = read("home/a.ics");
    EXPECT_EQ(again, replaced(text, "T090000", "T100000"));
}

TEST_F(VdirReminderStoreTests, NothingChangedWritesNothing) {
    write("home/a.ics", todoText);
    VdirReminderStore opened = store();
    clock.time += 1h;
    EXPECT_EQ(opened.save(*opened.reminder("a")), *opened.reminder("a"));
    EXPECT_EQ(read("home/a.ics"), todoText);
}

TEST_F(VdirReminderStoreTests, AChangeOfAnotherProgramIsKept) {
    write("home/a.ics", todo("UID:a\nSUMMARY:old\n"));
    VdirReminderStore opened = store();
    Reminder reminder = opened.reminder("a").value();
    write("home/a.ics", todo("UID:a\nSUMMARY:new\nX-OTHER:1\n"));
    reminder.notes = "mine";
    const Reminder saved = opened.save(reminder);
    EXPECT_EQ(saved.title, "new");
    EXPECT_EQ(saved.notes, "mine");
    EXPECT_THAT(read("home/a.ics"), HasSubstr("SUMMARY:new\nX-OTHER:1\nDESCRIPTION:mine\n"));
    fs::remove(root() + "/home/a.ics");
    EXPECT_THROW(opened.save(reminder), ErrorRecord);
    EXPECT_THROW(opened.remove(reminder), ErrorRecord);
    EXPECT_TRUE(names().empty());
}

TEST_F(VdirReminderStoreTests, RemovesTheTodoFromAFileOfMany) {
    const std::string event = "BEGIN:VEVENT\nUID:a\nDTSTART:20260426T100000Z\nEND:VEVENT\n";
    const std::string other = "BEGIN:VTODO\nUID:b\nEND:VTODO\n";
    write("home/many.ics", calendar(event + "BEGIN:VTODO\nUID:a\nEND:VTODO\n" + other
                                    + "BEGIN:VTODO\nUID:a\nRECURRENCE-ID:20260426T100000Z\nEND:VTODO\n"));
    VdirReminderStore opened = store();
    opened.remove(*opened.reminder("a"));
    EXPECT_EQ(read("home/many.ics"), calendar(event + other));
    opened.remove(*opened.reminder("b"));
    EXPECT_EQ(read("home/many.ics"), calendar(event));
    write("home/one.ics", todo("UID:c\n"));
    opened.remove(*opened.reminder("c"));
    EXPECT_THAT(names(), ElementsAre("many.ics"));
}

TEST_F(VdirReminderStoreTests, AThousandTodosAreListed) {
    for (int i = 0; i < 1000; ++i)
        write("home/" + std::to_string(i) + ".ics", replaced(todoText, "UID:a\r", "UID:" + std::to_string(i) + "\r"));
    EXPECT_EQ(all().size(), 1000U);
}

TEST_F(VdirReminderStoreTests, LongLinesAndCyclesOfRelationsAreNoHindrance) {
    const std::string longLine = "X-LONG:" + std::string(std::size_t{10} << 20, 'x') + "\n";
    write("home/a.ics", todo("UID:a\nRELATED-TO:b\n" + longLine));
    write("home/b.ics", todo("UID:b\nRELATED-TO:a\n"));
    EXPECT_THAT(identifiers(), ElementsAre("a", "b"));
    VdirReminderStore opened = store();
    Reminder reminder = opened.reminder("a").value();
    reminder.completed = true;
    EXPECT_TRUE(opened.save(reminder).completed);
    EXPECT_THAT(read("home/a.ics"), HasSubstr("RELATED-TO:b\n" + longLine));
}

TEST_F(VdirReminderStoreTests, AFileThatChangedMeanwhileIsNeitherReplacedNorRemoved) {
    const std::string path = write("home/a.ics", "theirs");
    EXPECT_FALSE(vdir::replaceFileDurably(path, "what was read", "mine"));
    EXPECT_FALSE(vdir::removeFileDurably(path, "what was read"));
    EXPECT_EQ(read("home/a.ics"), "theirs");
    EXPECT_TRUE(vdir::replaceFileDurably(path, "theirs", "mine"));
    EXPECT_EQ(read("home/a.ics"), "mine");
    EXPECT_THAT(names(), ElementsAre("a.ics"));
    EXPECT_TRUE(vdir::removeFileDurably(path, "mine"));
    EXPECT_FALSE(vdir::replaceFileDurably(path, "mine", "more"));
    EXPECT_FALSE(vdir::removeFileDurably(path, "mine"));
    EXPECT_TRUE(names().empty());
}

TEST_F(VdirReminderStoreTests, ALinkedFileIsReplacedBehindItsLink) {
    folder.write("elsewhere/real.ics", todo("UID:a\nSUMMARY:old\n"));
    write("home/displayname", "Home");
    fs::create_symlink(folder / "elsewhere/real.ics", root() + "/home/a.ics");
    VdirReminderStore opened = store();
    Reminder reminder = opened.reminder("a").value();
    reminder.title = "new";
    opened.save(reminder);
    EXPECT_TRUE(fs::is_symlink(root() + "/home/a.ics"));
    EXPECT_THAT(folder.read("elsewhere/real.ics"), HasSubstr("SUMMARY:new\n"));
}

} // namespace
} // namespace vesk::test
