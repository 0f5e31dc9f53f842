#include "VeskPlatform/Linux/Wayland/PortalScreenshot.hpp"

#include "tests/VeskPlatform/Linux/Wayland/PictureFiles.hpp"
#include "tests/VeskPlatform/Linux/Wayland/PortalWorld.hpp"

namespace vesk::test {
namespace {

TEST(FileUris, NameAPathOnThisMachine) {
    const std::pair<const char*, std::optional<std::string>> cases[] = {
        {"file:///tmp/a.png", "/tmp/a.png"},
        {"file:/tmp/a.png", "/tmp/a.png"},
        {"file://localhost/tmp/a.png", "/tmp/a.png"},
        {"file:///tmp/My%20Pictures/%C3%A4%2f.png", "/tmp/My Pictures/\u00e4/.png"},
        {"file://elsewhere/tmp/a.png", std::nullopt},
        {"https://example.org/a.png", std::nullopt},
        {"file:///a%2", std::nullopt},
        {"file:///a%zz", std::nullopt},
        {"file:///a%-1", std::nullopt},
        {"file:///a%00b", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [uri, path] : cases) EXPECT_EQ(pathOfFileUri(uri), path) << uri;
}

class PortalScreenshotTests : public PortalWorld {
protected:
    TemporaryFolder folder;
};

TEST_F(PortalScreenshotTests, ThePictureIsReadAndItsFileStays) {
    writePng(folder / "a b.png", 2, 1, false, {1, 2});
    desktop.screenshotUri = "file://" + folder.path() + "/a%20b.png";
    serve();
    const auto picture = takeScreenshot(portal);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->pixels, (std::vector<std::uint32_t>{0xFF000001, 0xFF000002}));
    EXPECT_TRUE(std::filesystem::exists(folder / "a b.png"));
    EXPECT_EQ(desktop.calls(), Lines{"Screenshot interactive=false"});
}

TEST_F(PortalScreenshotTests, ARefusalOrAFileThatCannotBeReadIsNoPicture) {
    desktop.screenshotUri = "file://" + folder.path() + "/none.png";
    serve();
    EXPECT_EQ(takeScreenshot(portal), nullptr);
    desktop.change([&] { desktop.outcomes["Screenshot"] = 1; });
    EXPECT_EQ(takeScreenshot(portal), nullptr);
}

} // namespace
} // namespace vesk::test
