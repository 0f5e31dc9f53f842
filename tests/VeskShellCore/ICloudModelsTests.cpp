#include "VeskShellCore/ICloudModels.hpp"

#include "tests/VeskShellCore/GoldenRecords.hpp"

namespace vesk {
namespace {

TEST(ICloudModels, ARoot) {
    const std::string whole = R"({
  "brokerPath" : "BROKERPATH",
  "bundlePath" : "BUNDLEPATH",
  "containerIdentifier" : "CONTAINERIDENTIFIER",
  "containerPath" : "CONTAINERPATH",
  "detail" : "DETAIL",
  "documentsPath" : "DOCUMENTSPATH",
  "rootPath" : "ROOTPATH",
  "scope" : "app_documents"
})";
    test::expectGolden<CapabilityICloudRootResponse>(whole);
    test::expectRequired<CapabilityICloudRootResponse>(
        whole, {"brokerPath", "containerIdentifier", "containerPath", "detail", "documentsPath", "rootPath", "scope"});
    test::expectGolden<CapabilityICloudRootResponse>(R"({
  "brokerPath" : "BROKERPATH",
  "containerIdentifier" : "CONTAINERIDENTIFIER",
  "containerPath" : "CONTAINERPATH",
  "detail" : "DETAIL",
  "documentsPath" : "DOCUMENTSPATH",
  "rootPath" : "ROOTPATH",
  "scope" : "app_documents"
})");
}

TEST(ICloudModels, AStat) {
    const std::string whole = R"({
  "brokerPath" : "BROKERPATH",
  "bundlePath" : "BUNDLEPATH",
  "containerIdentifier" : "CONTAINERIDENTIFIER",
  "detail" : "DETAIL",
  "exists" : true,
  "isDirectory" : true,
  "modifiedAtMs" : 5000000010,
  "path" : "PATH",
  "relativePath" : "RELATIVEPATH",
  "rootPath" : "ROOTPATH",
  "scope" : "app_documents",
  "sizeBytes" : 5000000009
})";
    test::expectGolden<CapabilityICloudStatResponse>(whole);
    test::expectRequired<CapabilityICloudStatResponse>(
        whole, {"brokerPath", "containerIdentifier", "detail", "exists", "isDirectory", "path", "rootPath", "scope"});
    test::expectGolden<CapabilityICloudStatResponse>(R"({
  "brokerPath" : "BROKERPATH",
  "containerIdentifier" : "CONTAINERIDENTIFIER",
  "detail" : "DETAIL",
  "exists" : true,
  "isDirectory" : true,
  "path" : "PATH",
  "rootPath" : "ROOTPATH",
  "scope" : "app_documents"
})");
}

TEST(ICloudModels, ATextThatWasRead) {
    const std::string whole = R"({
  "brokerPath" : "BROKERPATH",
  "bundlePath" : "BUNDLEPATH",
  "containerIdentifier" : "CONTAINERIDENTIFIER",
  "detail" : "DETAIL",
  "path" : "PATH",
  "relativePath" : "RELATIVEPATH",
  "rootPath" : "ROOTPATH",
  "scope" : "app_documents",
  "sizeBytes" : 5000000008,
  "text" : "TEXT"
})";
    test::expectGolden<CapabilityICloudReadTextResponse>(whole);
    test::expectRequired<CapabilityICloudReadTextResponse>(whole,
                                                           {"brokerPath", "containerIdentifier", "detail", "path",
                                                            "relativePath", "rootPath", "scope", "sizeBytes", "text"});
    test::expectGolden<CapabilityICloudReadTextResponse>(R"({
  "brokerPath" : "BROKERPATH",
  "containerIdentifier" : "CONTAINERIDENTIFIER",
  "detail" : "DETAIL",
  "path" : "PATH",
  "relativePath" : "RELATIVEPATH",
  "rootPath" : "ROOTPATH",
  "scope" : "app_documents",
  "sizeBytes" : 5000000008,
  "text" : "TEXT"
})");
}

TEST(ICloudModels, ATextThatWasWritten) {
    const std::string whole = R"({
  "brokerPath" : "BROKERPATH",
  "bundlePath" : "BUNDLEPATH",
  "containerIdentifier" : "CONTAINERIDENTIFIER",
  "detail" : "DETAIL",
  "path" : "PATH",
  "relativePath" : "RELATIVEPATH",
  "rootPath" : "ROOTPATH",
  "scope" : "app_documents",
  "sizeBytes" : 5000000007
})";
    test::expectGolden<CapabilityICloudWriteTextResponse>(whole);
    test::expectRequired<CapabilityICloudWriteTextResponse>(
        whole,
        {"brokerPath", "containerIdentifier", "detail", "path", "relativePath", "rootPath", "scope", "sizeBytes"});
    test::expectGolden<CapabilityICloudWriteTextResponse>(R"({
  "brokerPath" : "BROKERPATH",
  "containerIdentifier" : "CONTAINERIDENTIFIER",
  "detail" : "DETAIL",
  "path" : "PATH",
  "relativePath" : "RELATIVEPATH",
  "rootPath" : "ROOTPATH",
  "scope" : "app_documents",
  "sizeBytes" : 5000000007
})");
}

TEST(ICloudModels, AFolderThatWasMade) {
    const std::string whole = R"({
  "brokerPath" : "BROKERPATH",
  "bundlePath" : "BUNDLEPATH",
  "containerIdentifier" : "CONTAINERIDENTIFIER",
  "detail" : "DETAIL",
  "path" : "PATH",
  "relativePath" : "RELATIVEPATH",
  "rootPath" : "ROOTPATH",
  "scope" : "app_documents"
})";
    test::expectGolden<CapabilityICloudMakeDirectoryResponse>(whole);
    test::expectRequired<CapabilityICloudMakeDirectoryResponse>(
        whole, {"brokerPath", "containerIdentifier", "detail", "path", "relativePath", "rootPath", "scope"});
    test::expectGolden<CapabilityICloudMakeDirectoryResponse>(R"({
  "brokerPath" : "BROKERPATH",
  "containerIdentifier" : "CONTAINERIDENTIFIER",
  "detail" : "DETAIL",
  "path" : "PATH",
  "relativePath" : "RELATIVEPATH",
  "rootPath" : "ROOTPATH",
  "scope" : "app_documents"
})");
}

TEST(ICloudModels, AnExport) {
    const std::string whole = R"({
  "brokerPath" : "BROKERPATH",
  "bundlePath" : "BUNDLEPATH",
  "containerIdentifier" : "CONTAINERIDENTIFIER",
  "detail" : "DETAIL",
  "exportedPath" : "EXPORTEDPATH",
  "isDirectory" : true,
  "itemCount" : 5000000010,
  "relativePath" : "RELATIVEPATH",
  "rootPath" : "ROOTPATH",
  "scope" : "app_documents",
  "sizeBytes" : 5000000009,
  "sourcePath" : "SOURCEPATH"
})";
    test::expectGolden<CapabilityICloudExportResponse>(whole);
    test::expectRequired<CapabilityICloudExportResponse>(whole, {"brokerPath", "containerIdentifier", "detail",
                                                                 "exportedPath", "isDirectory", "relativePath",
                                                                 "rootPath", "scope", "sourcePath"});
    test::expectGolden<CapabilityICloudExportResponse>(R"({
  "brokerPath" : "BROKERPATH",
  "containerIdentifier" : "CONTAINERIDENTIFIER",
  "detail" : "DETAIL",
  "exportedPath" : "EXPORTEDPATH",
  "isDirectory" : true,
  "relativePath" : "RELATIVEPATH",
  "rootPath" : "ROOTPATH",
  "scope" : "app_documents",
  "sourcePath" : "SOURCEPATH"
})");
}

TEST(ICloudModels, AListing) {
    const std::string whole = R"({
  "baseRelativePath" : "a",
  "brokerPath" : "b",
  "containerIdentifier" : "c",
  "detail" : "D",
  "documentsPath" : "\/d",
  "entries" : [
    {
      "isDirectory" : true,
      "name" : "n",
      "relativePath" : "a\/n"
    },
    {
      "isDirectory" : false,
      "modifiedAtMs" : -1,
      "name" : "m",
      "relativePath" : "a\/m",
      "sizeBytes" : 5000000000
    }
  ],
  "rootPath" : "\/d",
  "scope" : "drive"
})";
    test::expectGolden<CapabilityICloudListResponse>(whole);
    test::expectRequired<CapabilityICloudListResponse>(
        whole, {"brokerPath", "containerIdentifier", "detail", "documentsPath", "entries", "rootPath", "scope"});
}

} // namespace
} // namespace vesk
