#include "VeskShellCore/PDFModels.hpp"
#include "tests/VeskShellCore/GoldenRecords.hpp"

namespace vesk {
namespace {

TEST(PDFModels, ARenderResponse) {
    const std::string whole = R"({
  "brokerPath" : "Vesk.app",
  "bundlePath" : "\/A\/Vesk.app",
  "detail" : "Rendered HTML into a PDF.",
  "fileName" : "a.pdf",
  "filePath" : "\/tmp\/a.pdf",
  "landscape" : true,
  "mimeType" : "application\/pdf",
  "pageCount" : 1,
  "paperSize" : "a4"
})";
    const auto response = test::expectGolden<CapabilityPDFRenderResponse>(whole);
    EXPECT_EQ(response.paperSize, CapabilityPDFPaperSize::a4);
    EXPECT_EQ(response.pageCount, 1);
    test::expectRequired<CapabilityPDFRenderResponse>(
        whole, {"brokerPath", "detail", "fileName", "filePath", "landscape", "mimeType", "pageCount", "paperSize"});
}

} // namespace
} // namespace vesk
