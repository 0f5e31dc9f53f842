#include "VeskPlatform/Linux/Vdir/FileReplacement.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "tests/VeskPlatform/Linux/Vdir/VdirReminderStoreTest.hpp"

#include <gmock/gmock.h>

namespace vesk::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

struct VdirReminderChangesTests : VdirReminderStoreTest {};

TEST_F(VdirReminderChangesTests, NewTodosAreWritten) {
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

TEST_F(VdirReminderChangesTests, AChangeTouchesOnlyItsOwnProperties) {
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

TEST_F(VdirReminderChangesTests, ReopeningTakesTheCompletionAway) {
    write("home/a.ics", todo("UID:a\nSTATUS:COMPLETED\nPERCENT-COMPLETE:100\nCOMPLETED:20260101T000000Z\nX-A:1\n"));
    VdirReminderStore opened = store();
    Reminder reminder = opened.reminder("a").value();
    reminder.completed = false;
    reminder.completionDate.reset();
    opened.save(reminder);
    EXPECT_EQ(read("home/a.ics"), todo("UID:a\nSTATUS:NEEDS-ACTION\nX-A:1\nDTSTAMP:20260426T083000Z\n"
                                       "LAST-MODIFIED:20260426T083000Z\n"));
}

TEST_F(VdirReminderChangesTests, ANewZoneBringsItsDefinition) {
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

TEST_F(VdirReminderChangesTests, NothingChangedWritesNothing) {
    write("home/a.ics", todoText);
    VdirReminderStore opened = store();
    clock.time += 1h;
    EXPECT_EQ(opened.save(*opened.reminder("a")), *opened.reminder("a"));
    EXPECT_EQ(read("home/a.ics"), todoText);
}

TEST_F(VdirReminderChangesTests, AChangeOfAnotherProgramIsKept) {
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

TEST_F(VdirReminderChangesTests, RemovesTheTodoFromAFileOfMany) {
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

TEST_F(VdirReminderChangesTests, AThousandTodosAreListed) {
    for (int i = 0; i < 1000; ++i)
        write("home/" + std::to_string(i) + ".ics", replaced(todoText, "UID:a\r", "UID:" + std::to_string(i) + "\r"));
    EXPECT_EQ(all().size(), 1000U);
}

TEST_F(VdirReminderChangesTests, LongLinesAndCyclesOfRelationsAreNoHindrance) {
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

TEST_F(VdirReminderChangesTests, AFileThatChangedMeanwhileIsNeitherReplacedNorRemoved) {
    const std::string path = write("home/a.ics", "theirs");
    vdir::FolderTurn turn;
    EXPECT_FALSE(vdir::replaceFileDurably(path, "what was read", "mine", turn));
    EXPECT_FALSE(vdir::removeFileDurably(path, "what was read", turn));
    EXPECT_EQ(read("home/a.ics"), "theirs");
    EXPECT_TRUE(vdir::replaceFileDurably(path, "theirs", "mine", turn));
    EXPECT_EQ(read("home/a.ics"), "mine");
    EXPECT_THAT(names(), ElementsAre("a.ics"));
    EXPECT_TRUE(vdir::removeFileDurably(path, "mine", turn));
    EXPECT_FALSE(vdir::replaceFileDurably(path, "mine", "more", turn));
    EXPECT_FALSE(vdir::removeFileDurably(path, "mine", turn));
    EXPECT_TRUE(names().empty());
}

TEST_F(VdirReminderChangesTests, ALinkedFileIsReplacedBehindItsLink) {
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
