#include "VeskShellCore/CapabilityScreenCaptureSupport.hpp"

#include "tests/VeskShellCore/ControlFailure.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

/// Consent is given; two displays of 1440 by 900 points stand side by side, one of them with twice the pixels.
class ScreenCapture : public ::testing::Test {
protected:
    FakePlatform platform;
    FakeDisplays& displays = platform.fakeDesktop.screens;
    FakeScreenImages& images = platform.fakeDesktop.images;
    std::vector<std::string>& folders = platform.fakeFileManager.made;

    void SetUp() override {
        platform.fakeConsent.screenCapture = true;
        displays.all = {{.identifier = 11, .place = {0, 0, 1440, 900}},
                        {.identifier = 12, .place = {1440, 0, 1440, 900}, .scale = 2}};
    }
    CapabilityScreenshotResponse capture(const std::string& path = "/shots/a.png") {
        return runTask(CapabilityScreenCaptureSupport::captureScreenshot(platform, path, "b", "p"));
    }
    std::string failure() {
        return controlFailureOf([&] { capture(); });
    }
    /// The log lines less their times.
    std::vector<std::string> logged() {
        platform.fakeLogQueue.drain();
        std::vector<std::string> lines;
        for (const auto& [path, text] : platform.fakePrivateFiles.files) {
            std::istringstream stream(text);
            for (std::string line; std::getline(stream, line);) lines.push_back(line.substr(line.find("] ") + 2));
        }
        platform.fakePrivateFiles.files.clear();
        return lines;
    }
    /// The line behind those that a capture of `count` displays begins with.
    std::string lastOf(const std::string& count) {
        std::vector<std::string> lines = logged();
        const std::string last = lines.empty() ? "" : lines.back();
        if (!lines.empty()) lines.pop_back();
        EXPECT_EQ(lines, (Lines{"screen-capture start", "screen-capture permission=granted",
                                "screen-capture displays enumerated count=" + count}));
        return last;
    }
    using Lines = std::vector<std::string>;
    using Drawings = std::vector<FakeScreenImages::Drawing>;
};

constexpr const char* cannotCapture = "78 Unable to capture the current screen.";

TEST_F(ScreenCapture, ThePictureHasOnePixelForEachPointWhateverTheScale) {
    const auto response = capture();
    EXPECT_EQ(response, (CapabilityScreenshotResponse{.brokerPath = "b",
                                                      .bundlePath = "p",
                                                      .imagePath = "/shots/a.png",
                                                      .mimeType = "image/png",
                                                      .width = 2880,
                                                      .height = 900}));
    EXPECT_EQ(images.drawn, (Drawings{{"display 11", {0, 0, 1440, 900}}, {"display 12", {1440, 0, 1440, 900}}}));
    ASSERT_EQ(images.written.size(), 1U);
    EXPECT_EQ(images.written[0].first, "/shots/a.png");
    EXPECT_EQ(images.written[0].second, (std::pair<std::size_t, std::size_t>{2880, 900}));
    EXPECT_EQ(logged(), (Lines{"screen-capture start", "screen-capture permission=granted",
                               "screen-capture displays enumerated count=2",
                               "screen-capture captured method=coregraphics-displays width=2880 height=900",
                               "screen-capture wrote_png width=2880 height=900"}));
}

TEST_F(ScreenCapture, WithoutConsentNothingIsCapturedOrMade) {
    platform.fakeConsent.screenCapture = false;
    EXPECT_EQ(failure(), "77 Screen recording has not been granted to Vesk.");
    EXPECT_EQ(displays.captured, 0);
    EXPECT_TRUE(folders.empty());
    EXPECT_TRUE(platform.fakeConsent.requests.empty()) << "nobody is asked";
    EXPECT_EQ(logged(), (Lines{"screen-capture start", "screen-capture blocked reason=screen_recording_not_granted"}));
}

TEST_F(ScreenCapture, TheFolderIsMadeBeforeThePicture) {
    capture("/shots/of/today/a.png");
    EXPECT_EQ(folders, Lines{"/shots/of/today"});
    platform.fakeFileManager.refused = {"/locked"};
    displays.captured = 0;
    try {
        capture("/locked/a.png");
        ADD_FAILURE() << "no failure";
    } catch (const PosixError& error) {
        EXPECT_EQ(error.code(), EACCES);
    }
    EXPECT_EQ(displays.captured, 0);
}

TEST_F(ScreenCapture, ARelativePathStartsFromTheWorkingFolder) {
    EXPECT_EQ(capture("./b/../a.png").imagePath, "/home/dana/work/a.png");
    EXPECT_EQ(folders, Lines{"/home/dana/work"});
    EXPECT_EQ(images.written[0].first, "/home/dana/work/a.png");
}

TEST_F(ScreenCapture, ADisplayOnTheLeftMovesTheMainOneToTheRight) {
    displays.all = {{.identifier = 1, .place = {0, 0, 1440, 900}},
                    {.identifier = 2, .place = {-1280, -124, 1280, 1024}}};
    const auto response = capture();
    EXPECT_EQ(response.width, 2720);
    EXPECT_EQ(response.height, 1024);
    EXPECT_EQ(images.drawn, (Drawings{{"display 1", {1280, 124, 1440, 900}}, {"display 2", {0, 0, 1280, 1024}}}));
}

TEST_F(ScreenCapture, APartOfAPixelMakesTheCanvasWiderByAPixel) {
    displays.all = {{.identifier = 1, .place = {0, 0, 1440.5, 900}}};
    EXPECT_EQ(capture().width, 1441);
    EXPECT_EQ(images.drawn, (Drawings{{"display 1", {0, 0, 1440.5, 900}}}));
}

TEST_F(ScreenCapture, APartOfAPixelOfHeightIsLeftAboveTheDisplays) {
    displays.all = {{.identifier = 1, .place = {0, 0, 1440, 900.25}}, {.identifier = 2, .place = {1440, 100, 10, 10}}};
    EXPECT_EQ(capture().height, 901);
    EXPECT_EQ(images.drawn, (Drawings{{"display 1", {0, 0.75, 1440, 900.25}}, {"display 2", {1440, 100.75, 10, 10}}}));
}

TEST_F(ScreenCapture, DisplaysThatAreNotToldFailWithoutALine) {
    displays.countFails = true;
    EXPECT_EQ(failure(), "78 Unable to enumerate active displays for screenshot capture.");
    EXPECT_EQ(logged(), (Lines{"screen-capture start", "screen-capture permission=granted"}));
}

TEST_F(ScreenCapture, NoDisplayIsAFailure) {
    displays.all.clear();
    EXPECT_EQ(failure(), cannotCapture);
    EXPECT_EQ(lastOf("0"), "screen-capture failed stage=enumerate_displays reason=empty");
}

TEST_F(ScreenCapture, DisplaysThatAreCountedButNotListedFail) {
    displays.listFails = true;
    EXPECT_EQ(failure(), "78 Unable to load active displays for screenshot capture.");
    EXPECT_EQ(lastOf("2"), "screen-capture failed stage=load_displays");
}

TEST_F(ScreenCapture, ADisplayThatDoesNotCaptureFailsAllAndLeavesNoFile) {
    displays.all[1].captures = false;
    EXPECT_EQ(failure(), cannotCapture);
    EXPECT_EQ(lastOf("2"), "screen-capture failed stage=capture_display display=12");
    EXPECT_TRUE(images.contexts.empty());
    EXPECT_TRUE(images.written.empty());
}

TEST_F(ScreenCapture, DisplaysThatAreAllGoneAfterTheCountFail) {
    displays.whenCounted = [&] { displays.all.clear(); };
    EXPECT_EQ(failure(), cannotCapture);
    EXPECT_EQ(lastOf("2"), "screen-capture failed stage=capture_displays reason=empty_snapshots");
}

TEST_F(ScreenCapture, OnlyTheDisplaysThatAreListedAreCaptured) {
    displays.whenCounted = [&] { displays.all.pop_back(); };
    EXPECT_EQ(capture().width, 1440);
    EXPECT_EQ(displays.captured, 1);
}

TEST_F(ScreenCapture, ADisplayThatCameAfterTheCountIsLeftOut) {
    displays.whenCounted = [&] { displays.all.push_back({.identifier = 13, .place = {2880, 0, 10, 10}}); };
    EXPECT_EQ(capture().width, 2880);
    EXPECT_EQ(displays.captured, 2);
}

TEST_F(ScreenCapture, BoundsWithoutAnAreaFail) {
    displays.all = {{.identifier = 1, .place = {3, 3, 0.5, 0}}};
    EXPECT_EQ(failure(), cannotCapture);
    EXPECT_EQ(lastOf("1"), "screen-capture failed stage=compose reason=invalid_bounds width=1 height=0");
    displays.all = {{.identifier = 1, .place = {3, 3, 0, 7}}};
    EXPECT_EQ(failure(), cannotCapture);
    EXPECT_EQ(lastOf("1"), "screen-capture failed stage=compose reason=invalid_bounds width=0 height=7");
    EXPECT_TRUE(images.contexts.empty());
}

TEST_F(ScreenCapture, ComposingFailsWithItsStage) {
    images.fails = {"image"};
    EXPECT_EQ(failure(), "78 Unable to finalize the current screen image.");
    EXPECT_EQ(lastOf("2"), "screen-capture failed stage=make_image");
    images.fails = {"context"};
    EXPECT_EQ(failure(), "78 Unable to compose the current screen image.");
    EXPECT_EQ(lastOf("2"), "screen-capture failed stage=create_context width=2880 height=900");
    EXPECT_TRUE(images.written.empty());
}

TEST_F(ScreenCapture, WritingFailsAfterTheCaptureIsNoted) {
    const std::string captured = "screen-capture captured method=coregraphics-displays width=2880 height=900";
    images.fails = {"destination"};
    EXPECT_EQ(failure(), "79 Unable to open the screenshot destination.");
    EXPECT_EQ(logged().back(), captured) << "no line of its own";
    images.fails = {"finalize"};
    EXPECT_EQ(failure(), "80 Unable to write the screenshot PNG.");
    const Lines lines = logged();
    EXPECT_EQ(lines[lines.size() - 2], captured);
    EXPECT_EQ(lines.back(), "screen-capture failed stage=write_png");
}

} // namespace
} // namespace vesk::test
