#include "VeskSupport/ErrorRecord.hpp"
#include "tests/VeskPlatform/Linux/Vdir/StoreWorld.hpp"
#include "tests/support/DescriptorShortage.hpp"
#include "tests/support/Privileges.hpp"
#include "tests/support/Sanitizers.hpp"

#include <cerrno>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace vesk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

struct VdirEventStoreTests : testing::Test {
    StoreWorld world;
    const Instant day = utc("20260426"), nextDay = utc("20260427");

    std::vector<std::string> titles() { return world.titles(day, nextDay); }
    static NewEvent newEvent(Instant start, Instant end) {
        NewEvent event;
        event.calendarIdentifier = "home";
        event.title = "t";
        event.start = start;
        event.end = end;
        return event;
    }
    static std::string timed(const std::string& uid, const std::string& title) {
        return event("UID:" + uid + "\nSUMMARY:" + title + "\nDTSTART:20260426T100000Z\n");
    }
};

TEST_F(VdirEventStoreTests, AFileOfManyItemsGivesThemAll) {
    world.write("home/many.ics", calendar(timed("a", "A") + timed("b", "B") + timed("c", "C")
                                          + event("UID:b\nSUMMARY:B moved\nRECURRENCE-ID:20260427T100000Z\n"
                                                  "DTSTART:20260426T200000Z\n")
                                          + event("UID:d\nSUMMARY:D\nDTSTART:20270101T100000Z\n")));
    EXPECT_THAT(titles(), testing::UnorderedElementsAre("A", "B", "C", "B moved"));
    auto store = world.store();
    EXPECT_EQ(store.event("d")->title, "D");
    EXPECT_EQ(store.event("b")->title, "B");
}

TEST_F(VdirEventStoreTests, EventsWithoutUidAreListedAndHaveNoIdentifier) {
    world.write("home/a.ics", calendar(event("SUMMARY:one\nDTSTART:20260426T100000Z\n")
                                       + event("SUMMARY:two\nDTSTART:20260426T110000Z\n")));
    EXPECT_THAT(titles(), ElementsAre("one", "two"));
    EXPECT_FALSE(world.store().event("").has_value());
}

TEST_F(VdirEventStoreTests, AnIdentifierIsFoundHoweverItStandsInTheFile) {
    for (const auto& [name, raw] :
         std::vector<std::pair<std::string, std::string>>{{"plain", "a-1@example.com"},
                                                          {"comma", "a\\,b\\;c"},
                                                          {"backslash", "domain\\\\user"},
                                                          {"folded", "begin\n  continued"},
                                                          {"bytes", "caf\xE9"},
                                                          {"colons", "urn:uuid:1"},
                                                          {"blanks", " around "},
                                                          {"a lone backslash", "domain\\user"},
                                                          {"a tab", "a\\tb"}}) {
        fs::remove_all(world.root());
        world.write("home/a.ics", calendarOfEvent("UID:" + raw + "\nSUMMARY:x\nDTSTART:20260426T100000Z\n"));
        auto store = world.store();
        const auto listed = store.events(day, nextDay, {"home"});
        ASSERT_EQ(listed.size(), 1U) << name;
        EXPECT_TRUE(store.event(listed[0].identifier).has_value()) << name << " [" << listed[0].identifier << "]";
    }
}

TEST_F(VdirEventStoreTests, AnIdentifierInSeveralFilesMeansItsEarliestOccurrence) {
    world.write("home/a.ics", calendarOfEvent("UID:x\nSUMMARY:later\nDTSTART:20260501T100000Z\n"));
    world.write("home/b.ics", calendarOfEvent("UID:x\nSUMMARY:earlier\nDTSTART:20260426T100000Z\n"));
    EXPECT_EQ(world.store().event("x")->title, "earlier");
}

TEST_F(VdirEventStoreTests, CollectionsWhoseRepairedNamesAreEqualKeepTheirEventsApart) {
    world.write("caf\xE8/a.ics", calendar(timed("a", "A")));
    world.write("caf\xE9/b.ics", calendar(timed("b", "B")));
    auto store = world.store();
    std::vector<std::string> found;
    for (const auto& e : store.events(day, nextDay, {"caf\uFFFD"})) found.push_back(*e.title);
    EXPECT_THAT(found, ElementsAre("A", "B"));
}

TEST_F(VdirEventStoreTests, BadFilesNeverFailAListing) {
    world.write("home/good.ics", calendar(timed("good", "good")));
    world.write("home/empty.ics", "");
    world.write("home/text.ics", "hello");
    world.write("home/binary.ics", std::string("\0\1\2\xFF\xFE", 5) + std::string(5000, '\0'));
    world.write("home/cut.ics", calendar(timed("cut", "cut")).substr(0, 60));
    world.write("home/half.ics", calendar(timed("half", "half") + "BEGIN:VEVENT\n").substr(0, 150));
    world.write("home/no-start.ics", calendar(event("UID:n\nSUMMARY:n\n")));
    world.write("home/bad-start.ics", calendar(event("UID:n\nSUMMARY:n\nDTSTART:20261399T990000Z\n")));
    fs::create_directory(world.root() + "/home/folder.ics");
    ASSERT_EQ(::mkfifo((world.root() + "/home/pipe.ics").c_str(), 0600), 0);
    fs::create_symlink("loop.ics", world.root() + "/home/loop.ics");
    fs::create_symlink("gone", world.root() + "/home/dangling.ics");
    for (int run = 0; run < 2; ++run) EXPECT_THAT(titles(), testing::IsSupersetOf({"good"}));
    for (const std::string& line : world.logged) {
        EXPECT_THAT(line, testing::StartsWith("calendar-store files passed-over kind=damaged count="));
        EXPECT_THAT(line, testing::Not(testing::HasSubstr(".ics")));
    }
    EXPECT_FALSE(world.logged.empty());
}

TEST_F(VdirEventStoreTests, BytesThatAreNoUtf8AreReadAsReplacementsAndKept) {
    const std::string bytes = calendarOfEvent("UID:a\nSUMMARY:caf\xE9\nDTSTART:20260426T100000Z\n");
    world.write("home/a.ics", bytes);
    EXPECT_THAT(titles(), ElementsAre("caf\uFFFD"));
    EXPECT_EQ(world.folder.read("calendars/home/a.ics"), bytes);
}

TEST_F(VdirEventStoreTests, AFileThatCouldNotBeReadIsTriedAgain) {
    const std::string path = world.write("home/a.ics", calendar(timed("a", "A")));
    fs::permissions(path, fs::perms::none);
    {
        const WithoutPrivileges ordinary;
        EXPECT_THAT(titles(), IsEmpty());
        EXPECT_THAT(world.logged, ElementsAre("calendar-store files passed-over kind=unreadable count=1"));
        EXPECT_THAT(world.store().survey().unreadableFiles, ElementsAre(path));
    }
    if (::geteuid() != 0) fs::permissions(path, fs::perms::owner_all);
    EXPECT_THAT(titles(), ElementsAre("A")); // for root without a change to the file
}

TEST_F(VdirEventStoreTests, AShortageOfDescriptorsLeavesNothingOut) {
    SKIP_UNDER_SANITIZERS();
    world.write("home/a.ics", calendar(timed("a", "A")));
    world.write("home/displayname", "Home");
    world.write("account/work/b.ics", calendar(timed("b", "B")));
    int failed = 0;
    for (int room = 0; room < 8; ++room) {
        const DescriptorShortage shortage(room);
        try {
            VdirEventStore opened = world.store();
            const auto calendars = opened.calendars();
            ASSERT_EQ(calendars.size(), 2U) << room;
            EXPECT_EQ(calendars.back().title, "Home") << room;
            EXPECT_EQ(opened.events(day, nextDay, {"account/work", "home"}).size(), 2U) << room;
        } catch (const ErrorRecord& error) {
            EXPECT_EQ(error.code(), EMFILE) << room;
            ++failed;
        }
    }
    EXPECT_GT(failed, 0);
    EXPECT_LT(failed, 8);
}

TEST_F(VdirEventStoreTests, SurveyCountsAndNames) {
    world.write("home/a.ics", calendar(timed("a", "A")));
    world.write("home/b.ics", "x");
    world.write("home/notes.txt", "x");
    world.write("account/work/c.ics", calendar(event("SUMMARY:timeless\n")));
    world.write("account/work/todo.ics", calendar("BEGIN:VTODO\nUID:t\nEND:VTODO\n"));
    const VdirSurvey survey = world.store("").survey();
    EXPECT_EQ(survey.collections, 2U);
    EXPECT_EQ(survey.files, 4U);
    EXPECT_THAT(survey.damagedFiles, ElementsAre(world.root() + "/account/work/c.ics", world.root() + "/home/b.ics"));
    EXPECT_THAT(survey.unreadableFiles, IsEmpty());
    EXPECT_THAT(survey.unreadableFolders, IsEmpty());
    EXPECT_FALSE(fs::exists(world.cache()));
}

TEST_F(VdirEventStoreTests, AMissingRootIsEmptyAndAFileFails) {
    EXPECT_THAT(world.store().calendars(), IsEmpty());
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_FALSE(world.store().event("x").has_value());
    world.folder.write("calendars", "x");
    EXPECT_THROW(world.store().calendars(), PosixError);
}

TEST_F(VdirEventStoreTests, ACollectionThatVanishesAfterItWasListedHasNoEvents) {
    world.write("home/a.ics", calendar(timed("a", "A")));
    auto store = world.store();
    EXPECT_EQ(store.calendars().size(), 1U);
    fs::remove_all(world.root());
    EXPECT_THAT(store.events(day, nextDay, {"home"}), IsEmpty());
    EXPECT_THROW(store.save(newEvent(day, nextDay)), PosixError);
}

TEST_F(VdirEventStoreTests, ASavedEventIsOneNewFile) {
    world.zone = "Europe/Berlin";
    world.write("home/a.ics", calendar(timed("a", "A")));
    auto store = world.store();
    EXPECT_EQ(store.events(day, nextDay, {"home"}).size(), 1U);
    const auto saved = store.save({.calendarIdentifier = "home",
                                   .title = "T\n\r\x01,;\\ BEGIN:VEVENT",
                                   .start = utc("20260426T180000"),
                                   .end = utc("20260426T190000"),
                                   .location = "L",
                                   .notes = std::string(100'000, 'n')});
    EXPECT_EQ(store.events(day, nextDay, {"home"}).size(), 2U);
    EXPECT_TRUE(world.folder.exists("calendars/home/" + saved.identifier + ".ics"));
    const auto read = world.store().event(saved.identifier);
    ASSERT_TRUE(read);
    EXPECT_EQ(StoreWorld::text(*read), StoreWorld::text(saved));
    EXPECT_EQ(read->start, utc("20260426T180000"));
    EXPECT_EQ(read->notes, std::string(100'000, 'n'));
    EXPECT_THAT(world.store().survey().damagedFiles, IsEmpty());
}

TEST_F(VdirEventStoreTests, EveryYearThatAFileCanHoldIsWritten) {
    world.write("home/color", "");
    for (const std::string zone : {"UTC", "Europe/Berlin"})
        for (const std::string start : {"00010102T000000", "19700101T000000", "30010101T120000", "99991231T210000"}) {
            world.zone = zone;
            const auto saved = world.store().save(newEvent(utc(start), utc(start) + std::chrono::hours(1)));
            EXPECT_EQ(saved.start, utc(start)) << zone;
            EXPECT_EQ(saved.end, utc(start) + std::chrono::hours(1)) << zone;
            EXPECT_EQ(StoreWorld::text(world.store().event(saved.identifier).value()), StoreWorld::text(saved));
        }
}

TEST_F(VdirEventStoreTests, DatesThatNoFileCanHoldAreRefusedAndLeaveNothing) {
    world.write("home/color", "");
    for (const Instant start :
         {Instant::min(), Instant::max() - std::chrono::hours(2), utc("99991231") + std::chrono::days(400)}) {
        auto store = world.store();
        try {
            const auto saved = store.save(newEvent(start, start + std::chrono::hours(1)));
            ADD_FAILURE() << StoreWorld::text(saved);
        } catch (const ErrorRecord& error) {
            EXPECT_EQ(error.code(), 400) << error.description();
        }
        EXPECT_THAT(store.survey().files, 0U);
    }
}

} // namespace
} // namespace vesk::test
