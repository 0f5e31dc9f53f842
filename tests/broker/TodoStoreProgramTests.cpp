// The built broker over folders of to-dos.

#include "tests/support/ProgramRun.hpp"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace vesk {
namespace {

using test::ProgramResult;
using test::ProgramRun;
using testing::HasSubstr;
using testing::Not;
namespace fs = std::filesystem;

class TodoStoreProgram : public testing::Test {
protected:
    ProgramRun program{VESK_BINARY_DIR "/bin/VeskCapabilityBroker"};
    const fs::path root = program.folder() / "reminders";

    TodoStoreProgram() {
        program.deadline = std::chrono::seconds(20);
        program.environment["VESK_REMINDERS_DIR"] = root.string();
        program.environment["VESK_STATE_DIR"] = (program.folder() / "state").string();
        program.environment["VESK_CACHE_DIR"] = (program.folder() / "cache").string();
        program.environment["VESK_APP_SUPPORT_DIR"] = (program.folder() / "support").string();
        program.environment["TZ"] = "Europe/Berlin";
        ProgramRun setup(VESK_BINARY_DIR "/bin/vesk");
        setup.environment = program.environment;
        const auto granted = setup.run({"consent", "grant", "reminders", "--yes"});
        EXPECT_EQ(granted.status, 0) << granted;
    }

    std::string succeed(const std::vector<std::string>& arguments) {
        const ProgramResult result = program.run(arguments);
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
        return result.output;
    }
    static std::string content(const fs::path& path) {
        std::stringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
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

TEST_F(TodoStoreProgram, ATodoOfAnotherListIsNotFound) {
    fs::create_directories(root / "other");
    std::ofstream(root / "other/a.ics") << "BEGIN:VCALENDAR\nBEGIN:VTODO\nUID:a\nEND:VTODO\nEND:VCALENDAR\n";
    const ProgramResult result = program.run({"todo-delete", "--id", "a"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errorOutput, HasSubstr("Error Domain=VeskTodoOperations Code=404 \"Todo not found: a\""));
    EXPECT_TRUE(fs::exists(root / "other/a.ics"));
}

} // namespace
} // namespace vesk
