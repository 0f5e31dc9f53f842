#include "VeskShellCore/ScreenCaptureModels.hpp"
#include "tests/VeskShellCore/GoldenRecords.hpp"

namespace vesk::test {
namespace {

TEST(ScreenCaptureModels, AScreenshotResponse) {
    const std::string whole = R"({
  "brokerPath" : "b",
  "bundlePath" : "p",
  "height" : 900,
  "imagePath" : "\/tmp\/a.png",
  "mimeType" : "image\/png",
  "width" : 2880
})";
    const auto response = expectGolden<CapabilityScreenshotResponse>(whole);
    EXPECT_EQ(response.imagePath, "/tmp/a.png");
    EXPECT_EQ(response.width, 2880);
    EXPECT_EQ(response.height, 900);
    expectRequired<CapabilityScreenshotResponse>(whole, {"brokerPath", "imagePath", "mimeType", "width", "height"});
}

} // namespace
} // namespace vesk::test
