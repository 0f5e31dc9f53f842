// The built broker over folders of to-dos.

#include "tests/broker/StoreProgram.hpp"
#include "tests/support/Privileges.hpp"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>

namespace vesk {
namespace {

using test::ProgramResult;
using test::ProgramRun;
using testing::HasSubstr;
using testing::Not;
namespace fs = std::filesystem;

class TodoStoreProgram : public test::StoreProgram {
protected:
    TodoStoreProgram() : StoreProgram("reminders", "VESK_REMINDERS_DIR", "reminders") {}

    static std::string todoText(const std::string& lines) { return "BEGIN:VTODO\n" + lines + "END:VTODO\n"; }
    static std::string calendarText(const std::string& todos) {
        return "BEGIN:VCALENDAR\nVERSION:2.0\n" + todos + "END:VCALENDAR\n";
    }
    /// Holds an empty list of the broker's own.
    void holdList() const { write("vesk-todos/displayname", "Vesk Todos"); }
    /// How many to-dos a listing of all has.
    std::size_t listed() {
        const std::string output = succeed({"todo-list", "--view", "all"});
        std::size_t count = 0;
        for (std::size_t at = 0; (at = output.find("\"dueToday\" : ", at)) != std::string::npos; ++at) ++count;
        return count - 1; // the counts have one too
    }
    std::vector<fs::path> files() const {
        std::vector<fs::path> paths;
        for (const auto& entry : fs::directory_iterator(root / "vesk-todos"))
            if (entry.path().extension() == ".ics") paths.push_back(entry.path());
        return paths;
    }
};

TEST_F(TodoStoreProgram, ATodoLivesThroughAllCommands) {
    EXPECT_THAT(succeed({"todo-list", "--view", "today"}), HasSubstr("No todos matched the requested view."));
    EXPECT_EQ(content(root / "vesk-todos/displayname"), "Vesk Todos");

    const std::string added =
        succeed({"todo-add", "--title", "Milk", "--notes", "two, cold", "--due", "2030-04-26 09:30"});
    EXPECT_THAT(added, HasSubstr("\"list\" : \"Vesk Todos\""));
    EXPECT_THAT(added, HasSubstr("\"iso\" : \"2030-04-26T09:30\""));
    ASSERT_EQ(files().size(), 1U);
    const fs::path file = files().front();
    const std::string id = file.stem();
    EXPECT_THAT(added, HasSubstr("\"id\" : \"" + id + "\""));
    EXPECT_THAT(content(file), HasSubstr("DUE;TZID=Europe/Berlin:20300426T093000\r\n"));
    EXPECT_THAT(content(file), HasSubstr("DESCRIPTION:two\\, cold\r\n"));

    EXPECT_THAT(succeed({"todo-stats"}), HasSubstr("\"open\" : 1"));
    EXPECT_THAT(succeed({"todo-complete", "--id", id}), HasSubstr("\"completed\" : true"));
    EXPECT_THAT(content(file), HasSubstr("STATUS:COMPLETED\r\n"));
    EXPECT_THAT(succeed({"todo-list", "--view", "done"}), HasSubstr("\"title\" : \"Milk\""));
    EXPECT_THAT(succeed({"todo-reopen", "--id", id}), HasSubstr("\"completed\" : false"));
    EXPECT_THAT(content(file), Not(HasSubstr("COMPLETED:")));
    const std::string updated = succeed({"todo-update", "--id", id, "--title", "Bread", "--clear-due"});
    EXPECT_THAT(updated, HasSubstr("\"title\" : \"Bread\""));
    EXPECT_THAT(content(file), Not(HasSubstr("DUE")));
    EXPECT_THAT(succeed({"todo-delete", "--id", id}), HasSubstr("\"title\" : \"Bread\""));
    EXPECT_TRUE(files().empty());
}

TEST_F(TodoStoreProgram, BadFilesArePassedOver) {
    holdList();
    write("vesk-todos/good.ics", calendarText(todoText("UID:good\nSUMMARY:Good\n")));
    write("vesk-todos/cut.ics", calendarText(todoText("UID:cut\n")).substr(0, 50));
    write("vesk-todos/empty.ics", "");
    write("vesk-todos/nameless.ics", calendarText(todoText("SUMMARY:x\n")));
    write("vesk-todos/binary.ics", std::string("\0\xFF\xFE\r\n\0:;BEGIN", 13));
    write("vesk-todos/again.ics", calendarText(todoText("UID:good\nSUMMARY:Again\n")));
    fs::create_directory(root / "vesk-todos/folder.ics");
    fs::create_symlink("loop.ics", root / "vesk-todos/loop.ics");
    fs::create_symlink("/dev/zero", root / "vesk-todos/zero.ics");
    ASSERT_EQ(::mkfifo((root / "vesk-todos/pipe.ics").c_str(), 0600), 0);
    EXPECT_EQ(listed(), 1U);
    EXPECT_THAT(succeed({"todo-complete", "--id", "good"}), HasSubstr("\"title\" : \"Again\""));
    const std::string log = content(program.folder() / "support/logs/shell-debug.log");
    EXPECT_THAT(log, HasSubstr("reminder-store files passed-over kind=damaged count="));
    EXPECT_THAT(log, Not(HasSubstr(".ics")));
}

TEST_F(TodoStoreProgram, AbsurdDatesAreListed) {
    holdList();
    const char* dues[] = {"00000101",
                          "00010101T000000",
                          "99991231T235959Z",
                          "20261301",
                          "20260230T100000",
                          "99999999T999999Z",
                          "20260426T250000Z",
                          "-1",
                          "",
                          "TZID=x"};
    for (std::size_t i = 0; i < std::size(dues); ++i)
        write("vesk-todos/" + std::to_string(i) + ".ics",
              calendarText(todoText("UID:" + std::to_string(i) + "\nDUE:" + dues[i] + "\n")));
    write("vesk-todos/zone.ics",
          calendarText(todoText("UID:zone\nSUMMARY:Zone\nDUE;TZID=\"Nowhere/At, all\":20300426T100000\n")));
    EXPECT_EQ(listed(), std::size(dues) + 1);
    EXPECT_THAT(succeed({"todo-list"}), HasSubstr("\"iso\" : \"2030-04-26T10:00\""));
    EXPECT_THAT(succeed({"todo-add", "--title", "Last", "--due", "9999-12-31 23:59"}),
                HasSubstr("\"iso\" : \"9999-12-31T23:59\""));
}

TEST_F(TodoStoreProgram, CyclesOfRelationsAndLinesOfTenMegabytesAreNoHindrance) {
    const std::string longLine = "X-LONG:" + std::string(std::size_t{10} << 20, 'x') + "\n";
    holdList();
    write("vesk-todos/a.ics", calendarText(todoText("UID:a\nRELATED-TO:b\n" + longLine)));
    write("vesk-todos/b.ics", calendarText(todoText("UID:b\nRELATED-TO:a\nRELATED-TO:b\n")));
    EXPECT_EQ(listed(), 2U);
    succeed({"todo-complete", "--id", "a"});
    EXPECT_THAT(content(root / "vesk-todos/a.ics"), HasSubstr("RELATED-TO:b\n" + longLine + "STATUS:COMPLETED\n"));
}

TEST_F(TodoStoreProgram, TenThousandTodosInOneFile) {
    std::string all;
    for (int i = 0; i < 10'000; ++i) all += todoText("UID:t" + std::to_string(i) + "\nSUMMARY:x\n");
    holdList();
    write("vesk-todos/many.ics", calendarText(all));
    EXPECT_EQ(listed(), 10'000U);
    succeed({"todo-delete", "--id", "t9999"});
    EXPECT_THAT(succeed({"todo-complete", "--id", "t5000"}), HasSubstr("\"completed\" : true"));
    EXPECT_THAT(succeed({"todo-stats"}), HasSubstr("\"total\" : 9999\n"));
}

TEST_F(TodoStoreProgram, WithoutPermissionForANewListTheTodosGoToTheDefaultList) {
    write("closed/displayname", "Closed");
    write("home/displayname", "Home");
    fs::permissions(root / "closed", fs::perms(0500));
    fs::permissions(root, fs::perms(0500));
    program.launcher = test::withoutPrivileges();
    const std::string added = succeed({"todo-add", "--title", "Milk"});
    EXPECT_THAT(added, HasSubstr("\"list\" : \"Home\""));
    EXPECT_EQ(listed(), 1U);
    EXPECT_FALSE(fs::exists(root / "vesk-todos"));
    EXPECT_FALSE(fs::exists(root / "closed" / "vesk-todos"));
    fs::permissions(root / "home", fs::perms(0500));
    const ProgramResult refused = program.run({"todo-list"});
    EXPECT_EQ(refused.status, 1) << refused;
    EXPECT_THAT(refused.errorOutput, HasSubstr("Error Domain=NSPOSIXErrorDomain Code=13 ")) << refused;
    for (const auto& folder : {root, root / "home", root / "closed"}) fs::permissions(folder, fs::perms::owner_all);
}

TEST_F(TodoStoreProgram, AListThatCannotBeWrittenIsListedAndNotChanged) {
    holdList();
    const std::string text = calendarText(todoText("UID:a\nSUMMARY:x\n"));
    write("vesk-todos/a.ics", text);
    fs::permissions(root / "vesk-todos", fs::perms(0500));
    program.launcher = test::withoutPrivileges();
    EXPECT_EQ(listed(), 1U);
    for (const auto& words : {std::vector<std::string>{"todo-complete", "--id", "a"},
                              {"todo-delete", "--id", "a"},
                              {"todo-add", "--title", "y"}}) {
        const ProgramResult refused = program.run(words);
        EXPECT_EQ(refused.status, 1) << refused;
        EXPECT_THAT(refused.errorOutput, HasSubstr("Error Domain=NSPOSIXErrorDomain Code=13 ")) << refused;
    }
    fs::permissions(root / "vesk-todos", fs::perms::owner_all);
    EXPECT_EQ(content(root / "vesk-todos/a.ics"), text);
    EXPECT_EQ(files().size(), 1U);
}

TEST_F(TodoStoreProgram, FilesThatComeAndGoMeanwhileFailNothing) {
    holdList();
    write("vesk-todos/good.ics", calendarText(todoText("UID:good\n")));
    ProgramRun shell("/bin/sh");
    shell.environment = program.environment;
    shell.environment["BROKER"] = VESK_BINARY_DIR "/bin/VeskCapabilityBroker";
    shell.environment["DIR"] = root.string();
    const auto result = shell.run({"-c", R"(
        (while [ ! -e "$DIR/stop" ]; do
            for n in 1 2 3 4 5 6 7 8; do cp "$DIR/vesk-todos/good.ics" "$DIR/vesk-todos/x$n.ics"; done
            mkdir "$DIR/late" && cp "$DIR/vesk-todos/good.ics" "$DIR/late/a.ics"
            rm -r "$DIR"/vesk-todos/x?.ics "$DIR/late"
        done) &
        for run in $(seq 60); do "$BROKER" todo-list >/dev/null || echo failed; done
        touch "$DIR/stop"; wait)"});
    EXPECT_EQ(result.output, "") << result;
    EXPECT_EQ(result.errorOutput, "") << result;
    fs::remove(root / "stop");
    EXPECT_EQ(listed(), 1U);
}

TEST_F(TodoStoreProgram, ChangesAtOnceToOneFileAllSurvive) {
    std::string all;
    for (int i = 1; i <= 30; ++i) all += todoText("UID:t" + std::to_string(i) + "\nSUMMARY:x\n");
    holdList();
    write("vesk-todos/many.ics", calendarText(all));
    ProgramRun shell("/bin/sh");
    shell.environment = program.environment;
    shell.environment["BROKER"] = VESK_BINARY_DIR "/bin/VeskCapabilityBroker";
    const auto result = shell.run({"-c", R"(
        ("$BROKER" todo-add --title new >/dev/null; for n in $(seq 1 2 30); do
            "$BROKER" todo-complete --id "t$n" >/dev/null || echo "t$n failed"; done) &
        (for n in $(seq 2 2 30); do "$BROKER" todo-update --id "t$n" --title y >/dev/null || echo "t$n failed"; done) &
        wait)"});
    EXPECT_EQ(result.output, "") << result;
    EXPECT_EQ(result.errorOutput, "") << result;
    const std::string stats = succeed({"todo-stats"});
    EXPECT_THAT(stats, HasSubstr("\"total\" : 31\n"));
    EXPECT_THAT(stats, HasSubstr("\"completed\" : 15,"));
    const std::string text = content(root / "vesk-todos/many.ics");
    std::size_t changed = 0;
    for (std::size_t at = 0; (at = text.find("SUMMARY:y\n", at)) != std::string::npos; ++at) ++changed;
    EXPECT_EQ(changed, 15U);
    EXPECT_EQ(files().size(), 2U);
}

TEST_F(TodoStoreProgram, ATodoOfAnotherListIsNotFound) {
    write("other/a.ics", calendarText(todoText("UID:a\n")));
    const ProgramResult result = program.run({"todo-delete", "--id", "a"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errorOutput, HasSubstr("Error Domain=VeskTodoOperations Code=404 \"Todo not found: a\""));
    EXPECT_TRUE(fs::exists(root / "other/a.ics"));
}

} // namespace
} // namespace vesk
