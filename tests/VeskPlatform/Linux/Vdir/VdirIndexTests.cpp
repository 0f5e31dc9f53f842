// The calendar store with an index from an earlier run: it must answer as if there were none.

#include "VeskPlatform/Linux/Vdir/CollectionIndex.hpp"
#include "VeskPlatform/Linux/Vdir/IndexDatabase.hpp"
#include "tests/VeskPlatform/Linux/Vdir/StoreWorld.hpp"

#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <random>
#include <sys/stat.h>

namespace vesk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

std::string titled(const std::string& title, const std::string& lines = "DTSTART:20260426T100000Z\n") {
    return calendarOfEvent("UID:" + title + "\nSUMMARY:" + title + "\n" + lines);
}

struct VdirIndexTests : testing::Test {
    StoreWorld world;
    const Instant day = utc("20260426"), nextDay = utc("20260427");

    std::vector<std::string> titles() { return world.titles(day, nextDay); }
    /// Makes the index believe that nothing ever happens: answers that come from it are empty from then on.
    void blind() {
        vdir::IndexDatabase database(world.cache() + "/calendars.sqlite");
        const std::string collection = fs::canonical(world.root() + "/home").string();
        auto index = vdir::CollectionIndex::decoded(database.load(collection).value());
        for (auto& item : index->items) item.span = {0, 0};
        database.store(collection, index->encoded());
    }
    void expectSameAnswers(Instant from, Instant to) {
        EXPECT_EQ(StoreWorld::answers(world.store(), from, to),
                  StoreWorld::answers(world.storeWithoutIndex(), from, to));
    }
};

TEST_F(VdirIndexTests, UnchangedFilesAreNotReadAgain) {
    world.write("home/a.ics", titled("a"));
    EXPECT_THAT(titles(), ElementsAre("a"));
    blind();
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(VdirIndexTests, FilesThatChangedJustNowAreReadAgain) {
    world.clock.time = floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
    world.write("home/a.ics", titled("a"));
    EXPECT_THAT(titles(), ElementsAre("a"));
    blind();
    EXPECT_THAT(titles(), ElementsAre("a"));
}

TEST_F(VdirIndexTests, EveryChangeOfAFileIsNoticed) {
    const auto overwrite = [](const std::string& path, const std::string& bytes) {
        const int file = ::open(path.c_str(), O_WRONLY);
        ASSERT_EQ(::pwrite(file, bytes.data(), bytes.size(), 0), static_cast<ssize_t>(bytes.size()));
        ::close(file);
    };
    struct Case {
        const char* name;
        std::function<void(const std::string&)> change;
        std::string expected;
    };
    const std::vector<Case> cases{
        {"in place, of the same size", [&](const std::string& path) { overwrite(path, titled("b")); }, "b"},
        {"in place, with the time set back",
         [&](const std::string& path) {
             struct stat before {};
             ::stat(path.c_str(), &before);
             overwrite(path, titled("b"));
             const timespec times[] = {before.st_atim, before.st_mtim};
             ::utimensat(AT_FDCWD, path.c_str(), times, 0);
         },
         "b"},
        {"replaced, with the time set back",
         [&](const std::string& path) {
             const auto before = fs::last_write_time(path);
             world.write("home/b.tmp", titled("b"));
             fs::last_write_time(world.root() + "/home/b.tmp", before);
             fs::rename(world.root() + "/home/b.tmp", path);
         },
         "b"},
        {"removed and made again",
         [&](const std::string& path) {
             fs::remove(path);
             world.write("home/a.ics", titled("b"));
         },
         "b"},
        {"longer", [&](const std::string&) { world.write("home/a.ics", titled("longer")); }, "longer"},
        {"renamed", [&](const std::string& path) { fs::rename(path, world.root() + "/home/z.ics"); }, "a"},
    };
    for (const Case& c : cases) {
        fs::remove_all(world.root());
        const std::string path = world.write("home/a.ics", titled("a"));
        EXPECT_THAT(titles(), ElementsAre("a")) << c.name;
        blind();
        EXPECT_THAT(titles(), IsEmpty()) << c.name;
        c.change(path);
        EXPECT_THAT(titles(), ElementsAre(c.expected)) << c.name;
    }
}

TEST_F(VdirIndexTests, AddedAndRemovedFilesAreNoticed) {
    world.write("home/b.ics", titled("b"));
    EXPECT_THAT(titles(), ElementsAre("b"));
    world.write("home/a.ics", titled("a"));
    EXPECT_THAT(titles(), ElementsAre("a", "b"));
    fs::remove(world.root() + "/home/b.ics");
    EXPECT_THAT(titles(), ElementsAre("a"));
    fs::remove(world.root() + "/home/a.ics");
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(VdirIndexTests, NamesThatChangePlacesAreNoticed) {
    const auto file = [&](const std::string& name) { return world.root() + "/home/" + name; };
    world.write("home/a.ics", titled("a"));
    world.write("home/b.ics", titled("b", "DTSTART:20260427T100000Z\n"));
    EXPECT_THAT(titles(), ElementsAre("a"));
    fs::rename(file("a.ics"), file("t"));
    fs::rename(file("b.ics"), file("a.ics"));
    fs::rename(file("t"), file("b.ics"));
    EXPECT_THAT(titles(), ElementsAre("a"));
    EXPECT_THAT(world.titles(nextDay, utc("20260428")), ElementsAre("b"));
}

TEST_F(VdirIndexTests, TwoNamesOfOneFileAreTwoFiles) {
    const std::string path = world.write("home/a.ics", titled("a"));
    fs::create_hard_link(path, world.root() + "/home/b.ics");
    fs::create_symlink(path, world.root() + "/home/c.ics");
    EXPECT_THAT(titles(), ElementsAre("a", "a", "a"));
    EXPECT_THAT(titles(), ElementsAre("a", "a", "a"));
    world.write("home/d.ics", titled("d"));
    EXPECT_THAT(titles(), ElementsAre("a", "a", "a", "d"));
    fs::remove(world.root() + "/home/b.ics");
    EXPECT_THAT(titles(), ElementsAre("a", "a", "d"));
}

TEST_F(VdirIndexTests, ALinkThatLeadsElsewhereNowIsNoticed) {
    world.write("elsewhere/one", titled("one"));
    world.write("elsewhere/two", titled("two"));
    fs::create_directory(world.root() + "/home");
    fs::create_symlink("../elsewhere/one", world.root() + "/home/a.ics");
    EXPECT_THAT(titles(), ElementsAre("one"));
    fs::remove(world.root() + "/home/a.ics");
    fs::create_symlink("../elsewhere/two", world.root() + "/home/a.ics");
    EXPECT_THAT(titles(), ElementsAre("two"));
}

TEST_F(VdirIndexTests, ADeletedOrDamagedIndexIsMadeAgain) {
    for (int i = 0; i < 50; ++i)
        world.write("home/" + std::to_string(i) + ".ics",
                    titled("daily", "DTSTART:20260101T100000Z\nRRULE:FREQ=DAILY\n"));
    EXPECT_EQ(titles().size(), 50U);
    const std::string database = world.cache() + "/calendars.sqlite";
    const std::string whole = world.folder.read("cache/calendars.sqlite");
    std::mt19937 random(1);
    for (int round = 0; round < 60; ++round) {
        std::string bytes = whole;
        const std::size_t at = random() % bytes.size();
        bytes[at] = static_cast<char>(bytes[at] ^ (1 + random() % 255));
        world.folder.write("cache/calendars.sqlite", bytes);
        EXPECT_EQ(titles().size(), 50U) << "byte " << at;
    }
    fs::remove(database);
    EXPECT_EQ(titles().size(), 50U);
    EXPECT_TRUE(fs::exists(database));
    fs::remove_all(world.cache());
    world.folder.write("cache", "a file in the folder's place");
    EXPECT_EQ(titles().size(), 50U);
}

TEST_F(VdirIndexTests, RecurringItemsAreFoundInFarChunksAndBack) {
    world.write("home/weekly.ics", titled("weekly", "DTSTART:20200105T100000Z\nRRULE:FREQ=WEEKLY\n"));
    world.write("home/once.ics", titled("once"));
    world.write("home/rare.ics",
                titled("rare", "DTSTART;VALUE=DATE:20200229\nRRULE:FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=29\n"));
    for (const std::string start : {"20260426", "20991227", "20200105", "21040229", "19691231", "20260426"}) {
        expectSameAnswers(utc(start), utc(start) + std::chrono::days(1));
        expectSameAnswers(utc(start), utc(start) + std::chrono::days(200));
    }
    for (int year = 2000; year < 2060; ++year) {
        const Instant from = std::chrono::sys_days{std::chrono::year{year} / 2 / 28};
        expectSameAnswers(from, from + std::chrono::days(3));
    }
}

TEST_F(VdirIndexTests, AWindowOfTenThousandYearsLeavesTheIndexSmall) {
    for (int i = 0; i < 20; ++i)
        world.write("home/" + std::to_string(i) + ".ics",
                    titled("yearly", "DTSTART:20200105T100000Z\nRRULE:FREQ=YEARLY;COUNT=3\n"));
    expectSameAnswers(utc("00010101"), utc("99991231"));
    EXPECT_LT(fs::file_size(world.cache() + "/calendars.sqlite"), 100'000U);
    expectSameAnswers(day, nextDay);
    expectSameAnswers(utc("00010101"), utc("99991231"));
    expectSameAnswers(Instant::min(), Instant::max());
}

TEST_F(VdirIndexTests, ALocalZoneThatChangesBetweenRunsChangesTheAnswers) {
    int number = 0;
    for (const std::string lines :
         {"DTSTART;VALUE=DATE:20260426\n", "DTSTART:20260426T000500\n", "DTSTART:20260426T235500\n"})
        for (const std::string rule :
             {"", "RRULE:FREQ=DAILY;COUNT=3\n", "RRULE:FREQ=WEEKLY\n", "RDATE:20260501T000100\n"}) {
            const std::string name = std::to_string(number++);
            world.write("home/" + name + ".ics", titled(name, lines + rule));
        }
    const std::vector<std::string> zones{"Pacific/Kiritimati", "Pacific/Niue", "UTC",         "Asia/Kathmandu",
                                         "GMT+23:00",          "GMT-23:00",    "Pacific/Niue"};
    for (const std::string& zone : zones) {
        world.zone = zone;
        const LocalCalendar local(zone);
        for (int offset = -3; offset < 8; ++offset) {
            const Instant from =
                local.startOfDay(std::chrono::floor<std::chrono::days>(wall("20260426")) + std::chrono::days(offset));
            SCOPED_TRACE(zone + " " + std::to_string(offset));
            expectSameAnswers(from, from + std::chrono::hours(24));
        }
    }
}

/// A random but valid calendar file of one to three items.
std::string randomFile(std::mt19937& random) {
    const auto pick = [&](const std::vector<std::string>& from) { return from[random() % from.size()]; };
    const auto twoDigits = [&](unsigned limit, unsigned least) {
        const std::uint_fast32_t number = least + random() % limit;
        return std::string(number < 10 ? "0" : "") + std::to_string(number);
    };
    std::string components;
    for (unsigned i = 0; i <= random() % 3; ++i) {
        const std::string uid = "u" + std::to_string(random() % 5000);
        const std::string date = "2026" + twoDigits(12, 1) + twoDigits(28, 1);
        const bool allDay = random() % 4 == 0;
        const std::string time = allDay ? "" : "T" + twoDigits(24, 0) + twoDigits(60, 0) + "00";
        const std::string prefix =
            allDay ? ";VALUE=DATE:" : pick({":", ";TZID=Asia/Tokyo:", ";TZID=America/New_York:"});
        const std::string suffix = !allDay && prefix == ":" && random() % 2 == 0 ? "Z" : "";
        const std::string start = prefix + date + time + suffix;
        std::string lines = "UID:" + uid + "\nSUMMARY:" + uid + "\nDTSTART" + start + "\n";
        lines +=
            pick({"", allDay ? "DURATION:P3D\n" : "DURATION:PT90M\n", allDay ? "DURATION:P1D\n" : "DURATION:P2DT1H\n"});
        const std::string rule = pick({"", "", "", "RRULE:FREQ=DAILY;COUNT=9\n", "RRULE:FREQ=WEEKLY;INTERVAL=2\n",
                                       "RRULE:FREQ=MONTHLY;BYDAY=-1FR\n", "RRULE:FREQ=YEARLY\n"});
        lines += rule;
        if (!rule.empty() && random() % 3 == 0) lines += "EXDATE" + start + "\n";
        components += event(lines);
        if (!rule.empty() && random() % 3 == 0)
            components += event("UID:" + uid + "\nSUMMARY:moved\nRECURRENCE-ID" + start + "\nDTSTART" + prefix + "2026"
                                + twoDigits(12, 1) + twoDigits(28, 1) + time + suffix + "\n");
    }
    return calendar(components);
}

TEST_F(VdirIndexTests, RandomStoresAnswerAlikeWithAndWithoutAnIndex) {
    std::mt19937 random(20260426);
    for (int step = 0; step < 40; ++step) {
        for (int i = 0; i < 6; ++i) {
            const std::string name = (random() % 2 == 0 ? "home/" : "work/") + std::to_string(random() % 60) + ".ics";
            if (random() % 5 == 0)
                fs::remove(world.root() + "/" + name);
            else
                world.write(name, randomFile(random));
        }
        world.zone =
            std::vector<std::string>{"UTC", "Europe/Berlin", "Pacific/Kiritimati", "Pacific/Niue"}[random() % 4];
        for (int window = 0; window < 5; ++window) {
            const Instant from = utc("20251201") + std::chrono::hours(random() % (24 * 500));
            SCOPED_TRACE("step " + std::to_string(step) + " " + world.zone);
            expectSameAnswers(from, from + std::chrono::hours(random() % 100));
        }
        const std::string uid = "u" + std::to_string(random() % 5000);
        const auto with = world.store().event(uid), without = world.storeWithoutIndex().event(uid);
        ASSERT_EQ(with.has_value(), without.has_value()) << uid;
        if (with) {
            EXPECT_EQ(StoreWorld::text(*with), StoreWorld::text(*without));
        }
    }
}

} // namespace
} // namespace vesk::test
