#include "tests/vesk/CompanionTest.hpp"

#include <fstream>

namespace vesk::test {
namespace {

using ::testing::HasSubstr;

class ReleaseCommandsTests : public CompanionTest {
protected:
    std::string manifest(const std::string& text) const {
        const std::string path = (program.folder() / "latest.json").string();
        std::ofstream(path) << text;
        return path;
    }
    bool matches(const std::string& installed, const std::string& text) const {
        return at(json({"channel", "check", "--installed", installed, "--manifest", manifest(text)}), "matches")
               == JsonValue{true};
    }
    const std::string folder = "https://updates.vesk.example/macos/stable/versions/1.4.2/";
    const std::string good = R"({"channel":"stable","version":"1.4.2","appcast_url":")" + folder
                             + R"(appcast.xml","release_notes_url":")" + folder + R"(release-notes.html","dmg_url":")"
                             + folder + R"(Vesk-1.4.2.dmg","zip_url":")" + folder + R"(Vesk-1.4.2.zip","size":1})";
};

TEST_F(ReleaseCommandsTests, ChecksAManifest) {
    EXPECT_TRUE(matches("stable", good));
    EXPECT_FALSE(matches("beta", good));
    EXPECT_FALSE(matches("stable", R"({"channel":"stable","version":"1.4.2"})"));
}

TEST_F(ReleaseCommandsTests, AManifestThatCannotBeReadIsAFailure) {
    EXPECT_EQ(vesk({"channel", "check", "--installed", "stable", "--manifest", "/nowhere"}).status, 1);
    expectFailure({"channel", "check", "--installed", "stable", "--manifest", manifest(R"({"channel":"stable"})")},
                  "The data cannot be read: version is missing.");
    expectUsage({"channel", "check", "--installed", "stable"}, "vesk channel check", "--manifest is required");
}

TEST_F(ReleaseCommandsTests, PrintsAddresses) {
    const std::string channel = "https://updates.vesk.example/macos/stable/";
    const JsonValue urls = json({"channel", "urls", "--channel", "stable"});
    EXPECT_EQ(textAt(urls, "manifest"), channel + "latest.json");
    EXPECT_EQ(textAt(urls, "appcast"), channel + "appcast.xml");
    EXPECT_FALSE(has(urls, "releaseAppcast"));
    const JsonValue release = json({"channel", "urls", "--channel", "stable", "--version", "1.4.2"});
    EXPECT_EQ(textAt(release, "releaseAppcast"), folder + "appcast.xml");
    EXPECT_EQ(textAt(release, "releaseNotes"), folder + "release-notes.html");
    EXPECT_EQ(textAt(release, "dmg"), folder + "Vesk-1.4.2.dmg");
    EXPECT_EQ(textAt(release, "zip"), folder + "Vesk-1.4.2.zip");
}

TEST_F(ReleaseCommandsTests, WhatIsNoChannelOrVersionHasNoAddresses) {
    expectFailure({"channel", "urls", "--channel", "Stable"}, "There is no release channel \"Stable\".");
    expectFailure({"channel", "urls", "--channel", "beta", "--version", "1.4.2"},
                  "\"1.4.2\" is no version of the channel \"beta\".");
}

TEST_F(ReleaseCommandsTests, ReadsTheBootstrapTextFromStandardInput) {
    program.input = "Telegram account: @dana\nUser ID: 4711\n";
    EXPECT_EQ(json({"telegram-bootstrap"}),
              parseJson(R"({"allowedUsername":"dana","allowedUserID":"4711","allowedChatIDs":[]})"));
    program.input = "nothing here";
    EXPECT_EQ(json({"telegram-bootstrap"}), parseJson("{}"));
}

} // namespace
} // namespace vesk::test
