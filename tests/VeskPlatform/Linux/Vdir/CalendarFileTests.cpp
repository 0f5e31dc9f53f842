#include "VeskPlatform/Linux/Vdir/CalendarFile.hpp"

#include "tests/VeskPlatform/Linux/Vdir/CalendarText.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <cerrno>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace vesk::test {
namespace {

using namespace vdir;

TEST(CalendarFile, IsReadAndScanned) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/a.ics";
    std::ofstream(path) << calendarOfEvent("UID:u\nDTSTART:20240101T090000\n");
    const auto file = readCalendarFile(path);
    ASSERT_TRUE(file);
    EXPECT_FALSE(file->scanned.damaged);
    ASSERT_EQ(file->scanned.items.size(), 1U);
    EXPECT_EQ(parseItem(*file, 0, {}).at(0).uid, "u");
}

TEST(CalendarFile, IsNoneWhereThereIsNoRegularFileAndTellsWhy) {
    const TemporaryFolder folder;
    int errnoValue = 0;
    EXPECT_FALSE(readCalendarFile(folder.path() + "/missing.ics", &errnoValue));
    EXPECT_EQ(errnoValue, ENOENT);
    errnoValue = 0;
    EXPECT_FALSE(readCalendarFile(folder.path(), &errnoValue));
    EXPECT_NE(errnoValue, 0);
    const std::string pipe = folder.path() + "/pipe.ics";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    errnoValue = 0;
    EXPECT_FALSE(readCalendarFile(pipe, &errnoValue)) << "and does not wait for a writer";
    EXPECT_NE(errnoValue, 0);
}

TEST(CalendarFile, ThatIsBinaryOrEmptyIsDamaged) {
    const TemporaryFolder folder;
    for (const std::string& bytes : {std::string(), std::string(100'000, '\0'), std::string("\xFF\xFE B E G I N")}) {
        const std::string path = folder.path() + "/a.ics";
        std::ofstream(path, std::ios::binary) << bytes;
        const auto file = readCalendarFile(path);
        ASSERT_TRUE(file);
        EXPECT_TRUE(file->scanned.damaged);
        EXPECT_TRUE(file->scanned.items.empty());
    }
}

TEST(CalendarFile, GivesTheComponentsOfAnItemInTheirOrderAndLeavesOutTheUnreadable) {
    const CalendarText text(
        calendar(event("UID:u\nSUMMARY:a\nDTSTART:20240101T090000\n") + event("UID:u\nDTSTART:never\n")
                 + event("UID:u\nSUMMARY:b\nRECURRENCE-ID:20240101T090000\nDTSTART:20240102T090000\n")));
    const auto components = text.components();
    ASSERT_EQ(components.size(), 2U);
    EXPECT_EQ(components[0].summary, "a");
    EXPECT_EQ(components[1].summary, "b");
}

} // namespace
} // namespace vesk::test
