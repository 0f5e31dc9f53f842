#include "VeskShellCore/ImageClip.hpp"
#include "VeskShellCore/MediaOperations.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gmock/gmock.h>

namespace vesk {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const std::string work = "/temporary/vesk-media-compose-UUID";

class MediaOperations : public testing::Test {
protected:
    MediaOperations() {
        addImage("/in/a.png", {1000, 1000});
        addVideo("/in/b.mov", {});
        platform.bundle.executablePath = "/A/broker";
    }
    void addImage(const std::string& path, MediaSize size) {
        files.existing.insert(path);
        media.images[path] = size;
    }
    void addVideo(const std::string& path, test::FakeMediaFramework::Clip clip) {
        files.existing.insert(path);
        media.clips[path] = std::move(clip);
    }
    CapabilityMediaComposeResponse compose(const std::vector<std::string>& paths,
                                           std::optional<double> seconds = std::nullopt,
                                           std::string output = "/out/x/../reel.mp4") {
        std::vector<CapabilityMediaComposeInput> inputs;
        for (const std::string& path : paths) inputs.push_back({path, {}, {}, {}});
        return composeInputs(std::move(inputs), seconds, std::move(output));
    }
    CapabilityMediaComposeResponse composeInputs(std::vector<CapabilityMediaComposeInput> inputs,
                                                 std::optional<double> seconds = std::nullopt,
                                                 std::string output = "/out/reel.mp4") {
        return test::runTask(VeskMediaOperations::compose(platform, CapabilityMediaComposeProfile::instagramReel,
                                                          std::move(inputs), std::move(output), seconds,
                                                          platform.bundle));
    }
    template <class Action> std::string failure(Action action) {
        try {
            action();
        } catch (const ErrorRecord& error) {
            return error.domain() + " " + std::to_string(error.code()) + ": " + error.description();
        }
        return "no failure";
    }
    std::string failureOf(const std::vector<std::string>& paths) {
        return failure([&] { compose(paths); });
    }
    /// The failure where a step fails without a reason, then with one.
    void expectStep(const std::string& step, const std::string& input, const std::string& message, bool hasReason) {
        SCOPED_TRACE(step);
        media.fails = {step};
        EXPECT_EQ(failureOf({input}), "VeskMediaOperations 64: " + message);
        EXPECT_THAT(files.calls, Contains("removeWorkDirectory " + work));
        media.reason = std::make_exception_ptr(ErrorRecord("Framework", 7, "its own"));
        EXPECT_EQ(failureOf({input}), hasReason ? "Framework 7: its own" : "VeskMediaOperations 64: " + message);
        media.reason = nullptr;
        media.fails.clear();
        files.calls.clear();
    }

    test::FakePlatform platform;
    test::FakeMediaFramework& media = platform.fakeMediaFramework;
    test::FakeFileManager& files = platform.fakeFileManager;
};

TEST_F(MediaOperations, JoinsImagesAndVideos) {
    const CapabilityMediaComposeResponse expected{
        .brokerPath = "/A/broker",
        .bundlePath = "/Applications/Vesk.app",
        .filePath = "/out/reel.mp4",
        .fileName = "reel.mp4",
        .mimeType = "video/mp4",
        .profile = CapabilityMediaComposeProfile::instagramReel,
        .width = 1080,
        .height = 1920,
        .durationSeconds = 7,
        .inputCount = 2,
        .detail = "Composed media into a vertical MP4 for Instagram Reel publishing."};
    EXPECT_EQ(compose({"/in/a.png", "/in/b.mov"}), expected);
    ASSERT_THAT(media.videos, SizeIs(2));
    EXPECT_EQ(media.videos[0], (test::FakeMediaFramework::Inserted{work + "/image-0.mp4", {90, 30}, {0, 30}}));
    EXPECT_EQ(media.videos[1], (test::FakeMediaFramework::Inserted{"/in/b.mov", {4, 1}, {90, 30}}));
    ASSERT_TRUE(media.job);
    EXPECT_EQ(media.job->outputPath, "/out/reel.mp4");
    EXPECT_TRUE(media.job->optimizesForNetworkUse);
    EXPECT_EQ(media.job->videoComposition.renderSize, (MediaSize{1080, 1920}));
    EXPECT_EQ(media.job->videoComposition.frameDuration, (MediaTime{1, 30}));
    EXPECT_THAT(media.job->videoComposition.instructions, ElementsAre(CompositionInstruction{{0, 30}, {90, 30}, {}},
                                                                      CompositionInstruction{{90, 30}, {4, 1}, {}}));
}

TEST_F(MediaOperations, TheWorkFolderGoesWithTheRun) {
    compose({"/in/a.png"});
    EXPECT_THAT(files.calls,
                ElementsAre("createDirectory /out", "removeFile /out/reel.mp4", "makeWorkDirectory vesk-media-compose-",
                            "removeFile " + work + "/image-0.mp4", "removeWorkDirectory " + work));
}

TEST_F(MediaOperations, BlankInputsAreLeftOutAndDoNotCount) {
    std::vector<std::string> paths(24, "/in/b.mov");
    paths.insert(paths.begin() + 3, {" ", "\n\t", ""});
    EXPECT_EQ(compose(paths).inputCount, 24);
    paths.emplace_back("/in/b.mov");
    EXPECT_EQ(failureOf(paths), "VeskMediaOperations 64: Media composition accepts at most 24 inputs at a time.");
}

TEST_F(MediaOperations, WithoutInputsNothingIsTouched) {
    EXPECT_EQ(failureOf({" ", ""}), "VeskMediaOperations 64: Media composition needs at least one input file.");
    EXPECT_THAT(files.calls, IsEmpty());
}

TEST_F(MediaOperations, AFolderThatCannotBeMadeIsThePlatformsError) {
    files.refused = {"/out"};
    EXPECT_EQ(failureOf({"/in/a.png"}).substr(0, 22), "NSPOSIXErrorDomain 13:");
    files.refused = {"vesk-media-compose-"};
    EXPECT_EQ(failureOf({"/in/a.png"}).substr(0, 22), "NSPOSIXErrorDomain 13:");
}

TEST_F(MediaOperations, AnExistingOutputIsLostEvenWhereTheCompositionFails) {
    files.existing.insert("/out/reel.mp4");
    EXPECT_NE(failureOf({"/in/none.png"}), "no failure");
    EXPECT_THAT(files.existing, Not(Contains("/out/reel.mp4")));
}

TEST_F(MediaOperations, AnOutputThatIsNoFileToReplaceIsRefusedBeforeAnythingIsDone) {
    files.existing.insert("/dev/null");
    files.devices = {"/dev/null"};
    for (const std::string& output : {std::string("/dev/null"), std::string("/in/a.png\0.mp4", 14)})
        EXPECT_EQ(failure([&] { compose({"/in/b.mov"}, 4, output); }).substr(0, 22), "NSPOSIXErrorDomain 22:")
            << output;
    EXPECT_THAT(files.calls, IsEmpty());
}

TEST_F(MediaOperations, AnInputThatIsTheOutputTooIsKept) {
    files.links["/link.mov"] = "/in/b.mov";
    for (const std::string input : {"/in/x/../b.mov", "/link.mov"}) {
        EXPECT_EQ(failure([&] {
                      compose({"/in/a.png", input}, 4, "/in/b.mov");
                  }),
                  "VeskMediaOperations 64: The film would take the place of its own input: "
                      + input.substr(input.rfind('/') + 1));
        EXPECT_THAT(files.existing, Contains("/in/b.mov"));
        EXPECT_THAT(files.calls, IsEmpty());
    }
}

TEST_F(MediaOperations, AnOutputThatCannotBeRemovedDoesNotMatter) {
    files.existing.insert("/out/reel.mp4");
    files.refused = {"/out/reel.mp4"};
    EXPECT_EQ(compose({"/in/b.mov"}).durationSeconds, 4);
}

TEST_F(MediaOperations, ImagesLastThreeToTenSeconds) {
    const std::tuple<std::optional<double>, std::size_t> cases[] = {{std::nullopt, 90}, {1, 90},  {60, 300},  {3.3, 99},
                                                                    {10, 300},          {-5, 90}, {4.01, 121}};
    for (const auto& [seconds, frames] : cases) {
        media.written.clear();
        media.clips.erase(work + "/image-0.mp4");
        const double duration = compose({"/in/a.png"}, seconds).durationSeconds;
        EXPECT_THAT(media.written.at(0).times, SizeIs(frames));
        EXPECT_DOUBLE_EQ(duration, static_cast<double>(frames) / 30);
    }
}

TEST_F(MediaOperations, AClipHasAtLeastOneFrame) {
    EXPECT_EQ(imageClipFrames(0), 1);
    EXPECT_EQ(imageClipFrames(1.0 / 30), 1);
    EXPECT_EQ(imageClipFrames(1.0 / 29), 2);
}

TEST_F(MediaOperations, APictureIsDecodedOnceAndShownForAllFrames) {
    compose({"/in/a.png"});
    const auto& clip = media.written.at(0);
    EXPECT_EQ(clip.settings, (VideoSettings{1080, 1920, 6'000'000}));
    EXPECT_EQ(clip.times.front(), (MediaTime{0, 30}));
    EXPECT_EQ(clip.times.back(), (MediaTime{89, 30}));
    EXPECT_THAT(clip.buffers, SizeIs(1));
    EXPECT_TRUE(clip.finished);
    EXPECT_THAT(media.thumbnailSizes, ElementsAre(3840U));
    EXPECT_THAT(media.filled, ElementsAre(test::FakeMediaFramework::Drawing{{0, 0, 1080, 1920}}));
    EXPECT_THAT(media.drawn, ElementsAre(test::FakeMediaFramework::Drawing{{0, 420, 1080, 1080}}));
    EXPECT_EQ(media.locked, 1);
    EXPECT_EQ(media.unlocked, 1);
}

TEST_F(MediaOperations, AWriterThatIsNotReadyIsWaitedFor) {
    media.unreadiness = 2;
    compose({"/in/a.png"});
    EXPECT_THAT(platform.fakeSleeper.slept, SizeIs(180));
    EXPECT_THAT(platform.fakeSleeper.slept, Each(std::chrono::milliseconds(10)));
}

TEST_F(MediaOperations, StepsOfAnImageClip) {
    expectStep("open-image", "/in/a.png", "Unable to read image: a.png", false);
    expectStep("thumbnail", "/in/a.png", "Unable to decode image: a.png", false);
    expectStep("buffer", "/in/a.png", "Unable to allocate an image video frame.", false);
    expectStep("lock", "/in/a.png", "Unable to access image video frame memory.", false);
    expectStep("context", "/in/a.png", "Unable to draw an image video frame.", false);
    expectStep("input", "/in/a.png", "Unable to create an image video track.", false);
    expectStep("start", "/in/a.png", "Unable to start image video writing.", true);
    expectStep("append", "/in/a.png", "Unable to append image frame.", true);
    expectStep("finish", "/in/a.png", "Image clip writing failed.", true);
    EXPECT_EQ(media.locked, media.unlocked);
}

TEST_F(MediaOperations, StepsOfTheTimeline) {
    expectStep("video-track", "/in/b.mov", "Unable to create a video composition track.", false);
    expectStep("session", "/in/b.mov", "Unable to create a media export session.", false);
}

TEST_F(MediaOperations, ErrorsOfTheFrameworkPassThrough) {
    media.throws = {"writer"};
    EXPECT_EQ(failureOf({"/in/a.png"}), "Framework 9: writer failed");
    media.throws = {"insert-video"};
    EXPECT_EQ(failureOf({"/in/b.mov"}), "Framework 9: insert-video failed");
}

TEST_F(MediaOperations, HowAnExportEnds) {
    const std::pair<ExportStatus, const char*> cases[] = {
        {ExportStatus::failed, "Media export failed."},
        {ExportStatus::cancelled, "Media export failed."},
        {ExportStatus::exporting, "Media export ended with status 2."},
        {ExportStatus::unknown, "Media export ended with status 0."}};
    for (const auto& [status, message] : cases) {
        media.exportStatus = status;
        EXPECT_EQ(failureOf({"/in/b.mov"}), std::string("VeskMediaOperations 64: ") + message);
    }
    media.exportStatus = ExportStatus::failed;
    media.reason = std::make_exception_ptr(ErrorRecord("Framework", 7, "its own"));
    EXPECT_EQ(failureOf({"/in/b.mov"}), "Framework 7: its own");
    media.exportStatus = ExportStatus::waiting;
    EXPECT_EQ(failureOf({"/in/b.mov"}), "VeskMediaOperations 64: Media export ended with status 1.");
}

TEST_F(MediaOperations, AClipNeedsALengthAndPictures) {
    for (const std::optional<MediaTime>& duration :
         {std::optional<MediaTime>(), std::optional(MediaTime{0, 1}), std::optional(MediaTime{-1, 30})}) {
        addVideo("/in/c.mp4", {.duration = duration});
        EXPECT_EQ(failureOf({"/in/c.mp4"}), "VeskMediaOperations 64: Media input has no playable duration: c.mp4");
    }
    addVideo("/in/c.mp4", {.duration = MediaTime{1, 1}, .videoTracks = {}});
    EXPECT_EQ(failureOf({"/in/c.mp4"}), "VeskMediaOperations 64: Media input has no video track: c.mp4");
}

TEST_F(MediaOperations, SoundLiesWhereItsClipLies) {
    addVideo("/in/loud.mp4", {.duration = MediaTime{2, 1}, .audioTracks = 2});
    compose({"/in/a.png", "/in/loud.mp4", "/in/b.mov", "/in/loud.mp4"});
    EXPECT_EQ(media.audioTracks, 1);
    ASSERT_THAT(media.sounds, SizeIs(2));
    EXPECT_EQ(media.sounds[0], (test::FakeMediaFramework::Inserted{"/in/loud.mp4", {2, 1}, {90, 30}}));
    EXPECT_EQ(media.sounds[1], (test::FakeMediaFramework::Inserted{"/in/loud.mp4", {2, 1}, {270, 30}}));
}

TEST_F(MediaOperations, SoundThatCannotBeHadIsLeftOut) {
    addVideo("/in/loud.mp4", {.duration = MediaTime{2, 1}, .audioTracks = 1});
    media.fails = {"audio-track"};
    EXPECT_EQ(compose({"/in/loud.mp4"}).durationSeconds, 2);
    EXPECT_THAT(media.sounds, IsEmpty());
    media.fails.clear();
    media.throws = {"insert-audio"};
    EXPECT_EQ(compose({"/in/loud.mp4"}).durationSeconds, 2);
}

TEST_F(MediaOperations, AClipThatIsHeldUprightIsTurned) {
    const AffineTransform quarterTurn{.a = 0, .b = 1, .c = -1, .d = 0, .tx = 1080, .ty = 0};
    addVideo("/in/phone.mov", {.videoTracks = {{{1920, 1080}, quarterTurn}}});
    compose({"/in/phone.mov"});
    EXPECT_EQ(media.job->videoComposition.instructions.at(0).transform, quarterTurn);
}

TEST_F(MediaOperations, AnInputThatIsGoneIsNamedAsTheUserKnowsIt) {
    EXPECT_EQ(failureOf({"/in/gone.png"}), "VeskMediaOperations 64: Media input is no longer available: gone.png");
    EXPECT_EQ(failure([&] {
                  composeInputs({{"/in/gone.png", {}, {}, "Holiday.png"}});
              }),
              "VeskMediaOperations 64: Media input is no longer available: Holiday.png");
}

TEST_F(MediaOperations, AnInputOfAnotherTypeIsRefused) {
    files.existing.insert("/in/c.txt");
    EXPECT_EQ(failureOf({"/in/c.txt"}), "VeskMediaOperations 64: Unsupported media type for Reel composition: c.txt");
}

TEST_F(MediaOperations, AnInputThatIsBothIsAnImage) {
    addImage("/in/both.mp4", {100, 100});
    composeInputs({{"/in/both.mp4", "video", "image/png", {}}});
    EXPECT_THAT(media.written, SizeIs(1));
}

TEST_F(MediaOperations, ClipsAreNumberedByTheirPlaceAmongTheInputs) {
    compose({"/in/b.mov", "/in/a.png"});
    EXPECT_EQ(media.written.at(0).path, work + "/image-1.mp4");
}

TEST_F(MediaOperations, RelativePathsStartAtTheCurrentDirectory) {
    addVideo("/home/dana/work/c.mov", {});
    EXPECT_EQ(compose({"c.mov"}, {}, "sub/reel.mp4").filePath, "/home/dana/work/sub/reel.mp4");
}

} // namespace
} // namespace vesk
