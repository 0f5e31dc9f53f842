// The built broker over calendar folders that are broken, hostile, huge or change while it works.

#include "tests/support/Privileges.hpp"
#include "tests/support/ProgramRun.hpp"
#include "tests/support/RefusedCalls.hpp"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>

namespace vesk {
namespace {

using test::ProgramResult;
using test::ProgramRun;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

const std::string broker = VESK_BINARY_DIR "/bin/VeskCapabilityBroker";
const std::string companion = VESK_BINARY_DIR "/bin/vesk";

std::string eventText(const std::string& uid, const std::string& lines = "DTSTART:20260426T100000Z\n") {
    return "BEGIN:VEVENT\nUID:" + uid + "\nSUMMARY:" + uid + "\n" + lines + "END:VEVENT\n";
}
std::string calendarText(const std::string& events) {
    return "BEGIN:VCALENDAR\nVERSION:2.0\n" + events + "END:VCALENDAR\n";
}

/// A granted broker over `calendars/home`, which has one good event on the 26th of April 2026.
class CalendarStoreProgram : public testing::Test {
protected:
    ProgramRun program{broker};
    const fs::path& folder = program.folder();
    const fs::path home = folder / "calendars/home";

    CalendarStoreProgram() {
        program.deadline = std::chrono::seconds(20);
        program.environment["VESK_CALENDARS_DIR"] = (folder / "calendars").string();
        program.environment["VESK_STATE_DIR"] = (folder / "state").string();
        program.environment["VESK_CACHE_DIR"] = (folder / "cache").string();
        program.environment["VESK_APP_SUPPORT_DIR"] = (folder / "support").string();
        fs::create_directories(home);
        hold("good.ics", calendarText(eventText("good")));
        ProgramRun setup(companion);
        setup.environment = program.environment;
        const auto granted = setup.run({"consent", "grant", "calendar", "--yes"});
        EXPECT_EQ(granted.status, 0) << granted;
    }
    ~CalendarStoreProgram() override {
        std::error_code ignored;
        fs::permissions(folder / "state", fs::perms::owner_all, ignored);
    }

    void hold(const std::string& name, const std::string& bytes) const {
        fs::create_directories((home / name).parent_path());
        std::ofstream(home / name, std::ios::binary) << bytes;
    }
    static std::string content(const fs::path& path) {
        std::stringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    }
    ProgramResult date(const std::string& day = "2026-04-26") { return program.run({"calendar-date", "--date", day}); }
    ProgramResult create(const std::string& title, const std::string& start = "2026-04-26 12:00",
                         const std::string& end = "2026-04-26 13:00") {
        return program.run({"calendar-create", "--calendar", "home", "--title", title, "--start", start, "--end", end});
    }
    static void expectSuccess(const ProgramResult& result) {
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
    }
    static void expectOneFatalLine(const ProgramResult& result, const std::string& start) {
        EXPECT_EQ(result.status, 1) << result;
        EXPECT_EQ(result.output, "") << result;
        EXPECT_THAT(result.errorOutput, StartsWith("[capability-broker] fatal error Error Domain=" + start)) << result;
        EXPECT_EQ(std::count(result.errorOutput.begin(), result.errorOutput.end(), '\n'), 1) << result;
    }
    static std::size_t events(const ProgramResult& result) {
        std::size_t count = 0;
        for (std::size_t at = 0; (at = result.output.find("\"sourceKey\"", at)) != std::string::npos; ++at) ++count;
        return count;
    }
    /// The good event alone, twice: without an index and with the one that the first run left.
    void expectOnlyTheGoodEvent(const std::string& what) {
        for (int run = 0; run < 2; ++run) {
            const auto result = date();
            expectSuccess(result);
            EXPECT_EQ(events(result), 1U) << what << result;
        }
    }
    /// What lies in the collection, hidden files too, but for the good event.
    std::vector<std::string> otherFiles() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(home))
            if (entry.path().filename() != "good.ics") names.push_back(entry.path().filename());
        return names;
    }
    /// Runs a creation of `title` in a process that `prepare` has changed; its status or 128 and the signal. The
    /// outputs go to the files `out` and `err`.
    int createAfter(const std::function<void()>& prepare, const std::string& title = "New") const {
        std::vector<std::string> words{broker, "calendar-create", "--calendar",      "home", "--title",
                                       title,  "--start",         "2026-04-26 12:00"};
        std::vector<std::string> variables;
        for (const auto& [name, value] : program.environment) variables.push_back(name + "=" + value);
        const auto pointers = [](std::vector<std::string>& texts) {
            std::vector<char*> result;
            for (std::string& text : texts) result.push_back(text.data());
            result.push_back(nullptr);
            return result;
        };
        return test::inChild([&] {
            for (const auto& [number, name] : {std::pair(1, "out"), std::pair(2, "err")})
                ::dup2(::open((folder / name).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), number);
            prepare();
            ::execve(broker.c_str(), pointers(words).data(), pointers(variables).data());
            return 98;
        });
    }
};

TEST_F(CalendarStoreProgram, BadFilesArePassedOver) {
    hold("broken.ics", "BEGIN:VCALENDAR\nBEGIN:VEVENT\nDTSTART:nonsense\nEND:VEVENT\nBEGIN:VEV");
    hold("empty.ics", "");
    hold("binary.ics", std::string("\0\xFF\xFE\r\n\0:;BEGIN", 15));
    hold("ends.ics", "END:VCALENDAR\nEND:VEVENT\n");
    hold("self.ics", content(broker).substr(0, 3'000'000));
    ASSERT_EQ(::mkfifo((home / "pipe.ics").c_str(), 0600), 0);
    fs::create_directory(home / "folder.ics");
    fs::create_symlink("loop.ics", home / "loop.ics");
    fs::create_symlink("nowhere", home / "dangling.ics");
    fs::create_symlink("/dev/zero", home / "zero.ics");
    fs::create_symlink("..", home / "up");
    expectOnlyTheGoodEvent("bad files");
    const std::string log = content(folder / "support/logs/shell-debug.log");
    EXPECT_THAT(log, HasSubstr("kind=damaged"));
    EXPECT_THAT(log, testing::Not(HasSubstr(".ics")));
}

TEST_F(CalendarStoreProgram, HugeFilesArePassedOverOrRead) {
    constexpr std::size_t size = 64U << 20;
    hold("zeros.ics", "");
    fs::resize_file(home / "zeros.ics", size);
    expectOnlyTheGoodEvent("zeros");
    hold("beyond.ics", "");
    fs::resize_file(home / "beyond.ics", std::uintmax_t{1} << 40);
    expectOnlyTheGoodEvent("a terabyte");
    std::string nested;
    while (nested.size() < size) nested += "BEGIN:VEVENT\n";
    hold("zeros.ics", nested);
    expectOnlyTheGoodEvent("nested");
    hold("zeros.ics",
         calendarText(eventText("big", "DTSTART:20260426T100000Z\nX-BLOB:" + std::string(size, 'x') + "\n")));
    const auto result = date();
    expectSuccess(result);
    EXPECT_EQ(events(result), 2U);
}

TEST_F(CalendarStoreProgram, TenThousandEventsInOneFile) {
    std::string all;
    for (int i = 0; i < 10'000; ++i)
        all += eventText("e" + std::to_string(i),
                         i % 100 == 0 ? "DTSTART:20260426T110000Z\n" : "DTSTART:20200101T110000Z\nRRULE:FREQ=YEARLY\n");
    hold("many.ics", calendarText(all));
    for (int run = 0; run < 2; ++run) EXPECT_EQ(events(date()), 101U);
}

TEST_F(CalendarStoreProgram, WhatMayNotBeReadIsPassedOver) {
    hold("../closed/a.ics", calendarText(eventText("closed")));
    hold("secret.ics", calendarText(eventText("secret")));
    fs::permissions(folder / "calendars/closed", fs::perms::none);
    fs::permissions(home / "secret.ics", fs::perms::none);
    program.launcher = test::withoutPrivileges();
    expectOnlyTheGoodEvent("forbidden");
    fs::permissions(home, fs::perms(0500));
    expectOneFatalLine(create("New"), "");
    fs::permissions(home, fs::perms(0700));
    fs::permissions(folder / "calendars/closed", fs::perms::owner_all);
    EXPECT_EQ(otherFiles(), std::vector<std::string>{"secret.ics"});
}

TEST_F(CalendarStoreProgram, FilesThatComeAndGoMeanwhileFailNothing) {
    ProgramRun shell("/bin/sh");
    shell.environment = program.environment;
    shell.environment["BROKER"] = broker;
    shell.environment["DIR"] = home.string();
    const auto result = shell.run({"-c", R"(
        (while [ ! -e "$DIR/stop" ]; do
            for n in 1 2 3 4 5 6 7 8; do cp "$DIR/good.ics" "$DIR/x$n.ics"; done
            mkdir "$DIR/../late" && cp "$DIR/good.ics" "$DIR/../late/a.ics"
            rm -r "$DIR"/x?.ics "$DIR/../late"
        done) & 
        for run in $(seq 60); do "$BROKER" calendar-date --date 2026-04-26 >/dev/null || echo failed; done
        touch "$DIR/stop"; wait)"});
    EXPECT_EQ(result.output, "") << result;
    EXPECT_EQ(result.errorOutput, "") << result;
    fs::remove(home / "stop");
    expectOnlyTheGoodEvent("afterwards");
}

TEST_F(CalendarStoreProgram, DatesAtTheEndsOfTheRange) {
    hold("first.ics",
         calendarText(eventText("first", "DTSTART;VALUE=DATE:00010101\nRRULE:FREQ=YEARLY;INTERVAL=9998\n")));
    hold("last.ics", calendarText(eventText("last", "DTSTART:99991231T120000Z\nDTEND:99991231T235959Z\n")));
    hold("outside.ics", calendarText(eventText("outside", "DTSTART:00000101T000000Z\nDURATION:P99999999999W\n")));
    EXPECT_EQ(events(date("0001-01-01")), 1U);
    EXPECT_EQ(events(date("9999-01-01")), 1U);
    EXPECT_EQ(events(date("9999-12-31")), 1U);
    for (const std::string zone : {"Pacific/Kiritimati", "Pacific/Niue"}) {
        program.environment["TZ"] = zone;
        for (const std::string day : {"0001-01-01", "9999-12-31"}) expectSuccess(date(day));
    }
    expectOneFatalLine(date("10000-01-01"), "VeskCalendarOperations Code=400 ");
}

TEST_F(CalendarStoreProgram, BytesThatAreNoUtf8AreRepairedInAnswersAndKeptInFiles) {
    const std::string bytes = calendarText(eventText("caf\xE9"));
    hold("latin.ics", bytes);
    EXPECT_THAT(date().output, HasSubstr("\"caf\uFFFD\""));
    EXPECT_EQ(content(home / "latin.ics"), bytes);
    const auto made = create("t\xFFt");
    expectSuccess(made);
    EXPECT_THAT(made.output, HasSubstr("\"title\" : \"t\uFFFDt\""));
    EXPECT_EQ(program.run({"calendar-calendar", "--name", "\xC3"}).status, 1);
}

TEST_F(CalendarStoreProgram, ATitleOfAHundredThousandCharacters) {
    const std::string title(100'000, 'x');
    const auto made = create(title);
    expectSuccess(made);
    EXPECT_THAT(date().output, HasSubstr("\"" + title + "\""));
}

TEST_F(CalendarStoreProgram, TitlesCannotBreakOutOfTheirLine) {
    for (const std::string title : {"a\nEND:VEVENT\nEND:VCALENDAR", "a\rBEGIN:VALARM\rX", "a\r\nb", "\\n,;:\"",
                                    "a\x01\x7f"
                                    "b",
                                    "a\u2028b\u0085c"}) {
        const auto made = create(title);
        expectSuccess(made);
        ProgramRun doctor(companion);
        doctor.environment = program.environment;
        EXPECT_THAT(doctor.run({"doctor"}).output, testing::Not(HasSubstr("cannot be parsed"))) << title;
    }
    EXPECT_EQ(events(date()), 7U);
}

TEST_F(CalendarStoreProgram, CreationsAtOnceAllSurvive) {
    ProgramRun shell("/bin/sh");
    shell.environment = program.environment;
    shell.environment["BROKER"] = broker;
    const auto result = shell.run({"-c", R"(for n in $(seq 60); do
        "$BROKER" calendar-create --calendar home --title "t$n" --start "2026-04-26 12:00" >/dev/null &
        done; wait)"});
    expectSuccess(result);
    EXPECT_EQ(otherFiles().size(), 60U);
    EXPECT_EQ(events(date()), 61U);
}

TEST_F(CalendarStoreProgram, AKillAtAnyStepOfACreationLeavesNoHalfFile) {
    const auto withoutNamelessFiles = [] { test::refuseCall(SYS_openat, EOPNOTSUPP, 2, O_TMPFILE & ~O_DIRECTORY); };
    const std::vector<std::pair<std::string, std::function<void()>>> steps{
        {"opening", [] { test::killAtCall(SYS_openat, 2, O_TMPFILE & ~O_DIRECTORY); }},
        {"flushing", [] { test::killAtCall(SYS_fsync); }},
        {"naming", [] { test::killAtCall(SYS_linkat); }},
        {"flushing a hidden file",
         [&] {
             withoutNamelessFiles();
             test::killAtCall(SYS_fsync);
         }},
        {"naming a hidden file", [&] {
             withoutNamelessFiles();
             test::killAtCall(SYS_renameat2);
         }}};
    for (const auto& [name, prepare] : steps) {
        EXPECT_GT(createAfter(prepare), 127) << name;
        for (const std::string& file : otherFiles()) EXPECT_THAT(file, StartsWith(".")) << name;
        expectOnlyTheGoodEvent(name);
    }
    EXPECT_EQ(createAfter([] {}), 0);
    EXPECT_EQ(events(date()), 2U);
}

TEST_F(CalendarStoreProgram, AFullDiskLeavesTheOldState) {
    const std::string title(50'000, 't');
    const std::vector<std::pair<std::string, std::function<void()>>> shortages{
        {"no room for the bytes", [] { test::refuseCall(SYS_fsync, ENOSPC); }},
        {"no room for the name", [] { test::refuseCall(SYS_linkat, ENOSPC); }},
        {"no room for a file", [] { test::refuseCall(SYS_openat, ENOSPC, 2, O_TMPFILE & ~O_DIRECTORY); }},
        {"a limit of file sizes", [] {
             const rlimit limit{20'000, 20'000};
             ::setrlimit(RLIMIT_FSIZE, &limit);
         }}};
    for (const auto& [name, prepare] : shortages) {
        EXPECT_EQ(createAfter(prepare, title), 1) << name;
        EXPECT_EQ(content(folder / "out"), "") << name;
        EXPECT_THAT(content(folder / "err"),
                    StartsWith("[capability-broker] fatal error Error Domain=NSPOSIXErrorDomain "))
            << name;
        EXPECT_TRUE(otherFiles().empty()) << name;
    }
    expectOnlyTheGoodEvent("afterwards");
}

TEST_F(CalendarStoreProgram, ACacheThatCannotBeWrittenChangesNothing) {
    program.launcher = test::withoutPrivileges();
    for (const auto mode : {fs::perms(0500), fs::perms::none}) {
        fs::create_directories(folder / "cache");
        fs::permissions(folder / "cache", mode);
        expectOnlyTheGoodEvent("cache");
        fs::permissions(folder / "cache", fs::perms::owner_all);
    }
    fs::remove_all(folder / "cache");
    std::ofstream(folder / "cache") << "x";
    expectOnlyTheGoodEvent("a file in the folder's place");
}

TEST_F(CalendarStoreProgram, AStateFolderThatCannotBeWrittenStillGrants) {
    program.launcher = test::withoutPrivileges();
    fs::permissions(folder / "state", fs::perms(0500));
    fs::permissions(folder / "state/consent.sqlite", fs::perms(0400));
    expectOnlyTheGoodEvent("read-only state");
    expectSuccess(create("New"));
}

TEST_F(CalendarStoreProgram, ARootThatIsAFileIsAClearError) {
    program.environment["VESK_CALENDARS_DIR"] = (home / "good.ics").string();
    expectOneFatalLine(date(), "NSPOSIXErrorDomain Code=20 ");
}

TEST_F(CalendarStoreProgram, AnOddZoneOrNoHomeFailsNothing) {
    for (const std::string zone :
         {"", ":", "Nowhere/Town", "/etc/passwd", "XXX-24", "XXX+24:59:59", "\xFF", "../../etc/passwd"}) {
        program.environment["TZ"] = zone;
        expectSuccess(date());
    }
    program.environment.erase("HOME");
    expectSuccess(date());
}

} // namespace
} // namespace vesk
