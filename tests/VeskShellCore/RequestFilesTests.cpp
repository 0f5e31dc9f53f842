#include "VeskShellCore/RequestFiles.hpp"
#include "tests/fakes/FakeFiles.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

class RequestFiles : public testing::Test {
protected:
    test::FakeFileReader files;
    const std::string path = "/tmp/request.json";

    void hold(std::string text) { files.files[path] = std::move(text); }

    /// The message of the usage error that `read` ends with.
    template <class Read> std::string usageError(Read read, const std::string& text) {
        hold(text);
        try {
            read(files, path);
        } catch (const RequestError& error) {
            EXPECT_EQ(error.code(), 64);
            return error.description();
        }
        ADD_FAILURE() << "no failure for " << text;
        return {};
    }
    template <class Read> void expectUndecodable(Read read, const std::string& text) {
        hold(text);
        EXPECT_THROW(read(files, path), DecodingError) << text;
    }
};

TEST_F(RequestFiles, ContactWithAllFields) {
    const std::string golden = R"({
  "addresses" : [
    {
      "city" : "Berlin",
      "country" : "Germany",
      "countryCode" : "de",
      "formattedAddress" : "ignored",
      "label" : "home",
      "postalCode" : "10115",
      "state" : "BE",
      "street" : "Am Weg 1"
    }
  ],
  "department" : "D",
  "emails" : [
    {
      "label" : "work",
      "value" : "dana@example.com"
    }
  ],
  "jobTitle" : "J",
  "name" : " Dana ",
  "note" : "N",
  "organization" : "O",
  "phones" : [
    {
      "label" : "mobile",
      "value" : "+49"
    }
  ],
  "targetId" : "id-1"
})";
    hold(golden);
    const auto request = readContactSaveRequest(files, path);
    EXPECT_EQ(request.name, " Dana ");
    EXPECT_EQ(request.phones->at(0).value, "+49");
    EXPECT_EQ(writeJson(toJson(request)), golden);
}

TEST_F(RequestFiles, ContactWithTheNameAlone) {
    hold(R"({"name":"Dana","phones":null,"unknown":[1]})");
    CapabilityContactSaveRequest expected;
    expected.name = "Dana";
    EXPECT_EQ(readContactSaveRequest(files, path), expected);
}

TEST_F(RequestFiles, ContactFaults) {
    EXPECT_EQ(usageError(readContactSaveRequest, R"({"name":" \n\u00a0"})"), "Contact save request is missing a name.");
    for (const char* text : {R"({})", R"({"name":null})", R"({"name":1})", R"({"name":"D","phones":[{"label":"x"}]})",
                             R"({"name":"D","emails":[{"value":"x"}]})", R"({"name":"D","addresses":[{"city":"x"}]})",
                             R"({"name":"D","phones":{}})", R"([])", R"("D")", "", "{", "\xFF"})
        expectUndecodable(readContactSaveRequest, text);
}

TEST_F(RequestFiles, MediaWithAllFields) {
    const std::string golden = R"({
  "imageDurationSeconds" : 3.5,
  "inputs" : [
    {
      "fileName" : "a.png",
      "kind" : "image",
      "mimeType" : "image\/png",
      "path" : "\/tmp\/a"
    },
    {
      "path" : "\/tmp\/b"
    }
  ],
  "outputPath" : " \/tmp\/out.mp4 ",
  "profile" : "instagram_reel"
})";
    hold(golden);
    const auto request = readMediaComposeRequest(files, path);
    EXPECT_EQ(request.outputPath, " /tmp/out.mp4 ");
    EXPECT_EQ(request.inputs.size(), 2U);
    EXPECT_EQ(writeJson(toJson(request)), golden);
}

TEST_F(RequestFiles, MediaFaultsInOrder) {
    EXPECT_EQ(usageError(readMediaComposeRequest, R"({"profile":"instagram_reel","inputs":[],"outputPath":" "})"),
              "Media compose request is missing inputs.");
    EXPECT_EQ(
        usageError(readMediaComposeRequest, R"({"profile":"instagram_reel","inputs":[{"path":"a"}],"outputPath":" "})"),
        "Media compose request is missing an output path.");
    for (const char* text :
         {R"({"profile":"reel","inputs":[{"path":"a"}],"outputPath":"o"})",
          R"({"inputs":[{"path":"a"}],"outputPath":"o"})", R"({"profile":"instagram_reel","outputPath":"o"})",
          R"({"profile":"instagram_reel","inputs":[{}],"outputPath":"o"})",
          R"({"profile":"instagram_reel","inputs":[{"path":"a"}]})",
          R"({"profile":"instagram_reel","inputs":[{"path":"a"}],"outputPath":"o",)"
          R"("imageDurationSeconds":"3"})"})
        expectUndecodable(readMediaComposeRequest, text);
}

TEST_F(RequestFiles, PdfDefaultsToLetterInPortrait) {
    hold(R"({"html":" <p> ","outputPath":"/tmp/a.pdf"})");
    const PDFRenderRequest expected{.html = "<p>",
                                    .outputPath = "/tmp/a.pdf",
                                    .title = std::nullopt,
                                    .paperSize = CapabilityPDFPaperSize::letter,
                                    .landscape = false};
    EXPECT_EQ(readPDFRenderRequest(files, path), expected);
    hold(R"({"html":" <p>\n","outputPath":"\t/tmp/a.pdf ","title":null,"paperSize":null,"landscape":null,"x":{}})");
    EXPECT_EQ(readPDFRenderRequest(files, path), expected);
}

TEST_F(RequestFiles, PdfWithAllFields) {
    hold(R"({"html":"h","outputPath":"o","title":" T ","paperSize":"a4","landscape":true})");
    const PDFRenderRequest expected{
        .html = "h", .outputPath = "o", .title = " T ", .paperSize = CapabilityPDFPaperSize::a4, .landscape = true};
    EXPECT_EQ(readPDFRenderRequest(files, path), expected);
}

TEST_F(RequestFiles, PdfFaultsInOrder) {
    EXPECT_EQ(usageError(readPDFRenderRequest, R"({"html":"  ","outputPath":"/tmp/a.pdf"})"),
              "PDF render request is missing HTML content.");
    EXPECT_EQ(usageError(readPDFRenderRequest, R"({"html":"","outputPath":""})"),
              "PDF render request is missing HTML content.");
    EXPECT_EQ(usageError(readPDFRenderRequest, R"({"html":"h","outputPath":"\t"})"),
              "PDF render request is missing an output path.");
    for (const char* text :
         {R"({"html":"  ","outputPath":"/tmp/a.pdf","paperSize":"legal"})",
          R"({"html":"h","outputPath":"o","paperSize":"A4"})", R"({"html":"h"})", R"({"outputPath":"o"})",
          R"({"html":"h","outputPath":"o","landscape":1})", R"({"html":"h","outputPath":"o","title":2})"})
        expectUndecodable(readPDFRenderRequest, text);
}

TEST_F(RequestFiles, UnreadableFilesAreThePlatformsErrors) {
    files.folders.insert("/tmp/folder");
    for (const auto& [missing, code] : {std::pair{"/tmp/none.json", ENOENT}, std::pair{"/tmp/folder", EISDIR}}) try {
            readPDFRenderRequest(files, missing);
            ADD_FAILURE() << "no failure for " << missing;
        } catch (const PosixError& error) {
            EXPECT_EQ(error.code(), code);
        }
}

TEST_F(RequestFiles, TheSizeOfAFileIsBounded) {
    class BoundReader : public FileReader {
    public:
        std::uint64_t bound = 0;
        std::string contents(const std::string&, std::uint64_t maximumBytes) override {
            bound = maximumBytes;
            return R"({"name":"Dana"})";
        }
    } reader;
    readContactSaveRequest(reader, path);
    EXPECT_EQ(reader.bound, std::uint64_t{256} << 20);
}

} // namespace
} // namespace vesk
