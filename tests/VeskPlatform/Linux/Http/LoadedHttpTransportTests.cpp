#include "VeskPlatform/Linux/AdapterModule.hpp"
#include "VeskPlatform/Linux/Http/LoadedHttpTransport.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

TEST(LoadedHttpTransportTests, LoadsTheModuleAtTheFirstRequest) {
    TemporaryFolder folder;
    folder.write("v1", "from a file");
    LoadedHttpTransport transport(VESK_BINARY_DIR "/lib/vesk", {});
    const HttpResponse response = transport.send({.url = "file://" + folder.path() + "/v1"});
    EXPECT_EQ(response.status, std::nullopt);
    EXPECT_EQ(response.body, "from a file");
}

TEST(LoadedHttpTransportTests, AMissingModuleNamesThePackage) {
    LoadedHttpTransport transport("/no/such/folder", {});
    EXPECT_EQ(transport.standardText(404), "Not Found");
    try {
        transport.send({.url = "https://host/"});
        FAIL();
    } catch (const AdapterModuleMissing& error) {
        EXPECT_NE(error.description().find("libcurl4"), std::string::npos) << error.description();
    }
}

} // namespace
} // namespace vesk::test
