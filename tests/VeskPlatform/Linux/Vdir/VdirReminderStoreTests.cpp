#include "VeskSupport/ErrorRecord.hpp"
#include "tests/VeskPlatform/Linux/Vdir/VdirReminderStoreTest.hpp"
#include "tests/support/Privileges.hpp"

#include <gmock/gmock.h>

namespace vesk::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

struct VdirReminderStoreTests : VdirReminderStoreTest {};

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

TEST_F(VdirReminderStoreTests, AListThatAnotherProgramMadeMeanwhileIsShared) {
    VdirReminderStore ours = store(), theirs = store();
    ASSERT_TRUE(ours.lists().empty());
    const ReminderList made = theirs.createList("Vesk Todos", "local");
    EXPECT_EQ(ours.createList("Vesk Todos", "local"), made);
    EXPECT_THAT(names(""), ElementsAre("vesk-todos"));
    EXPECT_EQ(ours.createList("vesk todos", "local").identifier, "vesk-todos-2");
    // One that was there before is asked for again on purpose.
    EXPECT_EQ(ours.createList("Vesk Todos", "local").identifier, "vesk-todos-3");
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

} // namespace
} // namespace vesk::test
