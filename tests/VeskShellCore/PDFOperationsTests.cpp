#include "VeskShellCore/PDFOperations.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gmock/gmock.h>

namespace vesk {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class PDFOperations : public testing::Test {
protected:
    CapabilityPDFRenderResponse render(std::string html, std::string path,
                                       std::optional<std::string> title = std::nullopt,
                                       CapabilityPDFPaperSize paper = CapabilityPDFPaperSize::letter,
                                       bool landscape = false) {
        return test::runTask(VeskPDFOperations::renderHTML(platform, std::move(html), std::move(path), std::move(title),
                                                           paper, landscape, platform.bundle));
    }
    std::pair<std::int64_t, std::string> failureOf(std::string html, std::string path) {
        try {
            render(std::move(html), std::move(path));
        } catch (const ErrorRecord& error) {
            return {error.code(), error.domain() + ": " + error.description()};
        }
        return {0, ""};
    }

    test::FakePlatform platform;
    test::FakeWebEngine& engine = platform.fakeWebEngine;
    test::FakeFileManager& files = platform.fakeFileManager;
};

TEST_F(PDFOperations, RendersAPieceOfHtml) {
    platform.fakePdfDocuments.pages = 3;
    const auto response = render(" <p>hi</p>\n", " /out/x/../a.pdf ", " T ", CapabilityPDFPaperSize::a4, true);
    const CapabilityPDFRenderResponse expected{.brokerPath = "Vesk.app",
                                               .bundlePath = "/Applications/Vesk.app",
                                               .filePath = "/out/a.pdf",
                                               .fileName = "a.pdf",
                                               .mimeType = "application/pdf",
                                               .paperSize = CapabilityPDFPaperSize::a4,
                                               .landscape = true,
                                               .pageCount = 3,
                                               .detail = "Rendered HTML into a 3-page PDF."};
    EXPECT_EQ(response, expected);
    EXPECT_THAT(engine.calls, ElementsAre("view 842x595", "load", "print /out/a.pdf"));
    EXPECT_THAT(engine.document, HasSubstr("<title>T</title>"));
    EXPECT_THAT(engine.document, HasSubstr("@page { size: A4 landscape; margin: 0; }"));
    EXPECT_THAT(engine.document, HasSubstr("<body>\n<p>hi</p>\n  </body>"));
    EXPECT_THAT(files.calls, ElementsAre("createDirectory /out"));
    EXPECT_EQ(engine.openViews, 0);
}

TEST_F(PDFOperations, TheJobHasTheTurnedPaperAndTheTrimmedTitle) {
    render("x", "/out/a.pdf", " T ", CapabilityPDFPaperSize::letter, true);
    ASSERT_TRUE(engine.job);
    EXPECT_EQ(engine.job->paperWidth, 792);
    EXPECT_EQ(engine.job->paperHeight, 612);
    EXPECT_TRUE(engine.job->landscape);
    EXPECT_EQ(engine.job->jobTitle, "T");
}

TEST_F(PDFOperations, ABlankTitleGivesAnEmptyJobTitleAndNoneGivesNone) {
    render("x", "/out/a.pdf", " \n");
    EXPECT_EQ(engine.job->jobTitle, "");
    EXPECT_THAT(engine.document, HasSubstr("<title>Vesk PDF</title>"));
    render("x", "/out/a.pdf");
    EXPECT_EQ(engine.job->jobTitle, std::nullopt);
}

TEST_F(PDFOperations, OnePageHasADetailOfItsOwn) {
    EXPECT_EQ(render("x", "/out/a.pdf").detail, "Rendered HTML into a PDF.");
}

TEST_F(PDFOperations, ARelativePathStartsAtTheCurrentDirectory) {
    EXPECT_EQ(render("x", "sub/a.pdf").filePath, "/home/dana/work/sub/a.pdf");
    EXPECT_THAT(files.calls, ElementsAre("createDirectory /home/dana/work/sub"));
}

TEST_F(PDFOperations, BlankArgumentsFailBeforeAnythingIsDone) {
    EXPECT_EQ(failureOf(" \n", " "),
              std::pair(std::int64_t{400}, std::string("VeskPDFOperations: HTML content is required.")));
    EXPECT_EQ(failureOf("x", "\t"),
              std::pair(std::int64_t{400}, std::string("VeskPDFOperations: PDF output path is required.")));
    EXPECT_THAT(files.calls, IsEmpty());
    EXPECT_THAT(engine.calls, IsEmpty());
}

TEST_F(PDFOperations, AnOutputThatIsNoFileToReplaceIsRefusedBeforeAnythingIsDone) {
    files.existing = files.devices = {"/dev/null"};
    for (const std::string& output : {std::string("/dev/../dev/null"), std::string("/in/b\0.pdf", 10)})
        EXPECT_EQ(failureOf("x", output).first, EINVAL) << output;
    EXPECT_THAT(files.calls, IsEmpty());
    EXPECT_THAT(engine.calls, IsEmpty());
}

TEST_F(PDFOperations, AFolderThatCannotBeMadeIsThePlatformsError) {
    files.refused = {"/out"};
    EXPECT_EQ(failureOf("x", "/out/a.pdf").first, EACCES);
    EXPECT_THAT(engine.calls, IsEmpty());
}

TEST_F(PDFOperations, LayoutSettlesFor50MillisecondsAfterTheLoad) {
    std::vector<std::string> callsByThen;
    platform.fakeSleeper.whenAwake = [&] { callsByThen = engine.calls; };
    render("x", "/out/a.pdf");
    EXPECT_THAT(platform.fakeSleeper.slept, ElementsAre(std::chrono::milliseconds(50)));
    EXPECT_THAT(callsByThen, ElementsAre("view 612x792", "load"));
}

TEST_F(PDFOperations, ALoadThatEndsBeforeTheWaitIsSeen) {
    engine.answersAtOnce = true;
    EXPECT_EQ(render("x", "/out/a.pdf").pageCount, 1);
}

TEST_F(PDFOperations, AnExistingFileIsRemovedBeforePrinting) {
    files.existing = {"/out/a.pdf"};
    std::vector<std::string> removedByThen;
    engine.whenPrinted = [&] { removedByThen = files.calls; };
    render("x", "/out/a.pdf");
    EXPECT_THAT(removedByThen, ElementsAre("createDirectory /out", "removeFile /out/a.pdf"));
}

TEST_F(PDFOperations, AnExistingFileThatCannotBeRemovedFailsBeforePrinting) {
    files.existing = {"/out/a.pdf"};
    files.refused = {"/out/a.pdf"};
    EXPECT_EQ(failureOf("x", "/out/a.pdf").first, EACCES);
    EXPECT_THAT(engine.calls, ElementsAre("view 612x792", "load"));
    EXPECT_EQ(engine.openViews, 0);
}

TEST_F(PDFOperations, AFailedLoadIsTheEnginesErrorAndLeavesNoView) {
    engine.loadFailure = std::make_exception_ptr(ErrorRecord("Engine", 5, "no load"));
    EXPECT_EQ(failureOf("x", "/out/a.pdf"), std::pair(std::int64_t{5}, std::string("Engine: no load")));
    EXPECT_EQ(engine.openViews, 0);
    EXPECT_THAT(platform.fakeSleeper.slept, IsEmpty());
}

TEST_F(PDFOperations, AFailedPrintLeavesWhatItWrote) {
    engine.printSucceeds = false;
    EXPECT_EQ(failureOf("x", "/out/a.pdf"),
              std::pair(std::int64_t{500}, std::string("VeskPDFOperations: The PDF print operation failed.")));
    EXPECT_THAT(files.calls, ElementsAre("createDirectory /out"));
    EXPECT_THAT(platform.fakePdfDocuments.opened, IsEmpty());
    EXPECT_EQ(engine.openViews, 0);
}

TEST_F(PDFOperations, AResultThatIsNoDocumentIsRemoved) {
    for (const std::optional<std::int64_t> pages : {std::optional<std::int64_t>(), std::optional<std::int64_t>(0)}) {
        platform.fakePdfDocuments.pages = pages;
        engine.whenPrinted = [&] { files.existing = {"/out/a.pdf"}; };
        EXPECT_EQ(
            failureOf("x", "/out/a.pdf"),
            std::pair(std::int64_t{500}, std::string("VeskPDFOperations: The rendered PDF could not be opened.")));
        EXPECT_THAT(files.existing, IsEmpty());
    }
}

TEST_F(PDFOperations, AResultThatCannotBeRemovedIsStillNoDocument) {
    platform.fakePdfDocuments.pages = std::nullopt;
    EXPECT_EQ(failureOf("x", "/out/a.pdf").second, "VeskPDFOperations: The rendered PDF could not be opened.");
}

} // namespace
} // namespace vesk
