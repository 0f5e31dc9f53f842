#include "tests/support/TerminalRun.hpp"
#include "tests/vesk/CompanionTest.hpp"
#include "vesk/ProgressBar.hpp"

#include <fstream>

namespace vesk::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

struct ComposeTests : CompanionTest {
    ComposeTests() {
        ProgramRun tool("/usr/bin/ffmpeg");
        const ProgramResult made = tool.run(
            {"-y", "-loglevel", "error", "-f", "lavfi", "-i", "color=c=red:s=64x64", "-frames:v", "1", path("a.png")});
        EXPECT_EQ(made.status, 0) << made;
        std::ofstream(path("request.json")) << R"({"profile":"instagram_reel","inputs":[{"path":")" << path("a.png")
                                            << R"("}],"outputPath":")" << path("reel.mp4") << R"("})";
    }
    std::string path(const std::string& name) const { return (program.folder() / name).string(); }
    /// What a terminal shows of the run.
    std::string shown(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), companionProgram);
        TerminalRun run(arguments, {{"HOME", path("")}, {"PATH", "/usr/bin:/bin"}});
        EXPECT_EQ(run.finish(), 0) << run.shown();
        return run.shown();
    }
};

TEST_F(ComposeTests, PrintsTheRecordAndNothingElse) {
    const JsonValue record = json({"compose", "--request", path("request.json")});
    EXPECT_EQ(textAt(record, "filePath"), path("reel.mp4"));
    EXPECT_EQ(textAt(record, "profile"), "instagram_reel");
    EXPECT_TRUE(std::filesystem::exists(path("reel.mp4")));
}

TEST_F(ComposeTests, ATerminalShowsHowFarItIs) {
    EXPECT_THAT(shown({"compose", "--request", path("request.json")}), HasSubstr("Composing [#"));
}

TEST_F(ComposeTests, QuietShowsNothing) {
    EXPECT_THAT(shown({"compose", "--request", path("request.json"), "--quiet"}), Not(HasSubstr("Composing")));
}

TEST_F(ComposeTests, FailuresAreOneLine) {
    std::ofstream(path("empty.json")) << R"({"profile":"instagram_reel","inputs":[],"outputPath":"o"})";
    expectFailure({"compose", "--request", path("empty.json")}, "Media compose request is missing inputs.");
    expectFailure({"compose", "--request", path("none.json")}, path("none.json") + ": No such file or directory");
}

TEST_F(ComposeTests, ARequestIsNeeded) { expectUsage({"compose"}, "vesk compose", "--request is required"); }

TEST(ProgressBar, FillsUp) {
    EXPECT_EQ(progressLine("Composing", 0), "Composing [" + std::string(40, ' ') + "]   0 %");
    EXPECT_EQ(progressLine("Composing", 25), "Composing [" + std::string(10, '#') + std::string(30, ' ') + "]  25 %");
    EXPECT_EQ(progressLine("Composing", 100), "Composing [" + std::string(40, '#') + "] 100 %");
}

} // namespace
} // namespace vesk::test
