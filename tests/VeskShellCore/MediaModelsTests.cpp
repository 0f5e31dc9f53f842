#include "VeskShellCore/MediaModels.hpp"
#include "tests/VeskShellCore/GoldenRecords.hpp"

namespace vesk {
namespace {

TEST(MediaModels, AComposeResponse) {
    const std::string whole = R"({
  "brokerPath" : "b",
  "bundlePath" : "\/A\/Vesk.app",
  "detail" : "D",
  "durationSeconds" : 10.3,
  "fileName" : "a.mp4",
  "filePath" : "\/tmp\/a.mp4",
  "height" : 1920,
  "inputCount" : 2,
  "mimeType" : "video\/mp4",
  "profile" : "instagram_reel",
  "width" : 1080
})";
    EXPECT_EQ(test::expectGolden<CapabilityMediaComposeResponse>(whole).durationSeconds, 10.3);
    test::expectRequired<CapabilityMediaComposeResponse>(whole, {"brokerPath", "detail", "durationSeconds", "fileName",
                                                                 "filePath", "height", "inputCount", "mimeType",
                                                                 "profile", "width"});
}

} // namespace
} // namespace vesk
