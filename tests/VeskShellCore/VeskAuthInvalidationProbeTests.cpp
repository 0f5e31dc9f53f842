#include "VeskShellCore/VeskAuthInvalidationProbe.hpp"
#include "tests/fakes/FakePlatform.hpp"
#include "tests/fakes/RunTask.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

class VeskAuthInvalidationProbeTests : public testing::Test {
protected:
    FakePlatform platform;

    bool invalidated(const std::string& path = "/marker") {
        return runTask(VeskAuthInvalidationProbe(platform, path).isInvalidated());
    }
};

TEST_F(VeskAuthInvalidationProbeTests, TheFileAloneCounts) {
    EXPECT_FALSE(invalidated());
    for (const char* content : {"", "{}", R"({"invalidated":false})"}) {
        platform.fakeFileManager.existing.insert("/marker");
        platform.fakeFileManager.texts["/marker"] = content;
        EXPECT_TRUE(invalidated()) << content;
    }
}

TEST_F(VeskAuthInvalidationProbeTests, APathThatCannotBeReachedIsNotInvalidated) {
    EXPECT_FALSE(invalidated("/no/such/folder/marker"));
    EXPECT_FALSE(invalidated(""));
}

TEST_F(VeskAuthInvalidationProbeTests, TheMarkerLiesInTheHomeWhateverTheSupportFolder) {
    platform.fakeEnvironment.variables["VESK_APP_SUPPORT_DIR"] = "/elsewhere";
    EXPECT_EQ(VeskAuthInvalidationProbe::defaultMarkerFilePath(platform),
              "/home/dana/Library/Application Support/Vesk/data/vesk-auth-invalidated.json");
}

} // namespace
} // namespace vesk::test
