// The built broker on X servers of our own.

#include "tests/VeskPlatform/Linux/X11/RootPicture.hpp"
#include "tests/VeskPlatform/Linux/X11/TestWindow.hpp"
#include "tests/support/ProgramRun.hpp"
#include "tests/support/ReadPng.hpp"
#include "tests/support/VirtualDesktop.hpp"

#include <filesystem>
#include <fstream>
#include <future>
#include <gmock/gmock.h>
#include <iterator>

namespace vesk::test {
namespace {

using testing::HasSubstr;

class DesktopProgram : public testing::Test {
protected:
    explicit DesktopProgram(const VirtualScreen& screen = {}) : desktop(screen) {
        program.environment["DISPLAY"] = desktop.display();
        program.environment["VESK_STATE_DIR"] = (program.folder() / "state").string();
        program.environment["VESK_APP_SUPPORT_DIR"] = (program.folder() / "support").string();
        for (const std::string capability : {"accessibility", "screen_recording"}) {
            ProgramRun companion(VESK_BINARY_DIR "/bin/vesk");
            companion.environment = program.environment;
            const auto granted = companion.run({"consent", "grant", capability, "--yes"});
            EXPECT_EQ(granted.status, 0) << granted;
        }
    }
    std::string succeed(const std::vector<std::string>& arguments) const {
        const test::ProgramResult result = program.run(arguments);
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
        return result.output;
    }
    std::string fail(const std::vector<std::string>& arguments) const {
        const test::ProgramResult result = program.run(arguments);
        EXPECT_EQ(result.status, 1) << result;
        EXPECT_EQ(result.output, "") << result;
        return result.errorOutput;
    }
    void setMonitor(const std::string& name, const std::string& geometry, const std::string& output) {
        desktop.run("xrandr", {"--setmonitor", name, geometry, output});
    }

    VirtualDesktop desktop;
    ProgramRun program{VESK_BINARY_DIR "/bin/VeskCapabilityBroker"};
    const std::string path = program.folder() / "new/folder/picture.png";
};

TEST_F(DesktopProgram, TheActiveApplicationIsTold) {
    TestProgram other(desktop.display());
    EXPECT_THAT(succeed({"active-app"}), HasSubstr("No frontmost macOS application was reported."));
    other.show({.className = "Painter", .process = 4711});
    eventually("the window in front", [&] { return succeed({"active-app"}).find("4711") != std::string::npos; });
    EXPECT_THAT(succeed({"active-app"}), HasSubstr("\"appName\" : \"Painter\""));
}

TEST_F(DesktopProgram, AnApplicationIsActivatedByItsName) {
    TestProgram other(desktop.display());
    other.show({.className = "Painter", .process = 4711});
    other.show({.className = "Writer", .process = 4712, .x = 300});
    for (const std::string name : {"painter", "Writer", "Paint"}) {
        const std::string told = succeed({"activate-app", "--app", name});
        EXPECT_THAT(told, HasSubstr("\"activated\" : true"));
        EXPECT_THAT(told, HasSubstr(name == "Writer" ? "4712" : "4711"));
        EXPECT_THAT(succeed({"active-app"}), HasSubstr(name == "Writer" ? "4712" : "4711"));
    }
}

TEST_F(DesktopProgram, ClicksLandInTheUnionOfMonitors) {
    setMonitor("left", "300/80x400/100+100+50", "screen");
    setMonitor("right", "200/50x300/80+400+150", "none");
    TestProgram other(desktop.display());
    other.show({.isManaged = false, .x = 0, .y = 0, .width = 800, .height = 600});
    succeed({"click", "--x", "0", "--y", "0"});
    succeed({"click", "--x", "0.5", "--y", "0.25", "--button", "right"});
    eventually("two clicks", [&] {
        other.connection.synchronize();
        other.connection.dispatchEvents();
        return other.presses.size() == 2;
    });
    EXPECT_THAT(other.presses, testing::ElementsAre(TestProgram::Press{1, 100, 50}, TestProgram::Press{3, 350, 150}));
}

TEST_F(DesktopProgram, TextAndKeysArriveInATerminal) {
    const std::string typed = program.folder() / "typed";
    desktop.setVariable("LC_ALL", "C.UTF-8");
    desktop.run("setxkbmap", {"-layout", "de"});
    const pid_t terminal =
        desktop.launch("xterm", {"-u8", "-e", "sh", "-c", "stty -echo -icanon min 1; exec cat > " + typed});
    eventually("the terminal", [&] {
        return succeed({"active-app"}).find(std::to_string(terminal)) != std::string::npos
               && desktop.focusedProgram() == terminal && std::filesystem::exists(typed);
    });
    EXPECT_THAT(succeed({"type", "--text", "Gr\u00fc\u00dfe {\u0436} \U0001F600"}), HasSubstr("\"textLength\" : 11"));
    succeed({"key", "--key", "return"});
    std::string text;
    eventually("the typed text", [&] {
        std::ifstream file(typed, std::ios::binary);
        text.assign(std::istreambuf_iterator<char>(file), {});
        return text.ends_with('\n');
    });
    EXPECT_EQ(text, "Gr\u00fc\u00dfe {\u0436} \U0001F600\n");
}

TEST_F(DesktopProgram, WithoutADisplayTheFailureSaysSo) {
    program.environment.erase("DISPLAY");
    for (const auto& arguments : std::vector<std::vector<std::string>>{{"active-app"},
                                                                       {"activate-app", "--app", "x"},
                                                                       {"click", "--x", "0", "--y", "0"},
                                                                       {"type", "--text", "x"},
                                                                       {"key", "--key", "tab"},
                                                                       {"screenshot", "--output", path}})
        EXPECT_THAT(fail(arguments), HasSubstr("There is no display: the variable DISPLAY is not set."))
            << arguments[0];
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(DesktopProgram, ADisplayThatClosesInTheMiddleIsAFailure) {
    TestProgram other(desktop.display());
    const xcb_window_t window = other.show({.isManaged = false});
    xcb_set_input_focus(other.connection.get(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    auto typing = std::async(std::launch::async, [&] {
        return program.run({"type", "--text", std::string(100'000, 'x')});
    });
    eventually("the first letters", [&] {
        other.connection.synchronize();
        other.connection.dispatchEvents();
        return other.keys.size() > 3;
    });
    desktop.end();
    const test::ProgramResult result = typing.get();
    EXPECT_EQ(result.status, 1) << result;
    EXPECT_EQ(result.output, "") << result;
    EXPECT_THAT(result.errorOutput, HasSubstr("The connection to the display " + desktop.display() + " was closed."));
}

class ScreenshotProgram : public DesktopProgram {
protected:
    ScreenshotProgram() : DesktopProgram({.format = "900x400x24", .hasWindowManager = false}) {
        paintRoot(desktop.display(), testPattern);
    }
    /// The first place of the picture that is not the screen's at (left, top) further; none where all are.
    static std::string firstDifference(const ReadPng& picture, int left, int top, const Painting& painting) {
        for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
            const int x = static_cast<int>(i % picture.width), y = static_cast<int>(i / picture.width);
            if (picture.pixels[i] != painting(x + left, y + top)) return std::to_string(x) + "," + std::to_string(y);
        }
        return "";
    }
};

TEST_F(ScreenshotProgram, OneMonitorIsWrittenPixelByPixel) {
    const std::string told = succeed({"screenshot", "--output", path});
    EXPECT_THAT(told, HasSubstr("\"width\" : 900"));
    EXPECT_THAT(told, HasSubstr("\"height\" : 400"));
    const ReadPng picture = readPng(path);
    ASSERT_EQ(picture.pixels.size(), 900U * 400U);
    EXPECT_FALSE(picture.hasAlpha);
    EXPECT_EQ(firstDifference(picture, 0, 0, [](int x, int y) { return 0xFF000000 | testPattern(x, y); }), "");
}

TEST_F(ScreenshotProgram, TwoMonitorsAreOnePictureWithClearPlacesBetween) {
    setMonitor("left", "500/130x400/100+0+0", "screen");
    setMonitor("right", "300/80x200/50+550+100", "none");
    succeed({"screenshot", "--output", path});
    const ReadPng picture = readPng(path);
    ASSERT_EQ(picture.width, 850U);
    ASSERT_EQ(picture.height, 400U);
    EXPECT_TRUE(picture.hasAlpha);
    const Painting expected = [](int x, int y) {
        const bool isShown = x < 500 || (x >= 550 && y >= 100 && y < 300);
        return isShown ? 0xFF000000 | testPattern(x, y) : 0U;
    };
    EXPECT_EQ(firstDifference(picture, 0, 0, expected), "");
}

TEST_F(ScreenshotProgram, APictureThatCannotBeWrittenIsAFailure) {
    EXPECT_THAT(fail({"screenshot", "--output", "/dev/full"}),
                HasSubstr("Code=80 \"Unable to write the screenshot PNG.\""));
    EXPECT_THAT(fail({"screenshot", "--output", "/proc/absent/picture.png"}), HasSubstr("NSPOSIXErrorDomain"));
    std::filesystem::create_directories(path);
    EXPECT_THAT(fail({"screenshot", "--output", path}),
                HasSubstr("Code=79 \"Unable to open the screenshot destination.\""));
}

TEST_F(ScreenshotProgram, WithoutAMonitorThereIsNoPictureAndNoClick) {
    desktop.run("xrandr", {"--fb", "900x400", "--output", "screen", "--off"});
    EXPECT_THAT(fail({"screenshot", "--output", path}), HasSubstr("Code=78 \"Unable to capture the current screen.\""));
    EXPECT_THAT(fail({"click", "--x", "0", "--y", "0"}), HasSubstr("Code=88 "));
}

} // namespace
} // namespace vesk::test
