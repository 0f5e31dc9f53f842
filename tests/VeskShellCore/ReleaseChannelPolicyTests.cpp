#include "VeskShellCore/ReleaseChannelPolicy.hpp"

#include <functional>
#include <gtest/gtest.h>
#include <utility>

namespace vesk {
namespace {

using namespace ReleaseChannelPolicy;

const std::string origin = "https://updates.example";

TEST(ReleaseChannelPolicy, KnowsTwoChannelsExactly) {
    EXPECT_TRUE(isSupported("stable"));
    EXPECT_TRUE(isSupported("beta"));
    for (const char* other : {"Stable", "BETA", "", "nightly", "stable ", "beta\n"})
        EXPECT_FALSE(isSupported(other)) << other;
}

TEST(ReleaseChannelPolicy, AddressesOfTheChannels) {
    EXPECT_EQ(manifestURL(origin, "stable"), "https://updates.example/macos/stable/latest.json");
    EXPECT_EQ(manifestURL(origin, "beta"), "https://updates.example/macos/beta/latest.json");
    EXPECT_EQ(sparkleFeedURL(origin, "stable"), "https://updates.example/macos/stable/appcast.xml");
    EXPECT_EQ(sparkleFeedURL(origin, "beta"), "https://updates.example/macos/beta/appcast.xml");
    EXPECT_EQ(manifestURL(origin, "nightly"), std::nullopt);
    EXPECT_EQ(sparkleFeedURL(origin, "Stable"), std::nullopt);
    EXPECT_FALSE(releaseURLs(origin, "nightly", "1.4.2"));
}

TEST(ReleaseChannelPolicy, AddressesOfARelease) {
    const auto urls = releaseURLs(origin, "beta", "1.4.2-beta.1");
    ASSERT_TRUE(urls);
    const std::string folder = "https://updates.example/macos/beta/versions/1.4.2-beta.1";
    EXPECT_EQ(urls->appcast, folder + "/appcast.xml");
    EXPECT_EQ(urls->releaseNotes, folder + "/release-notes.html");
    EXPECT_EQ(urls->diskImage, folder + "/Vesk-1.4.2-beta.1.dmg");
    EXPECT_EQ(urls->archive, folder + "/Vesk-1.4.2-beta.1.zip");
}

TEST(ReleaseChannelPolicy, VersionsAreWrittenAsTheirChannelDoes) {
    for (const char* version : {"1.4.2", "0.0.0", "10.20.30"}) {
        EXPECT_TRUE(isVersion(version, "stable")) << version;
        EXPECT_FALSE(isVersion(version, "beta")) << version;
    }
    for (const char* version : {"1.4.2-beta.1", "1.4.2-beta.10"}) {
        EXPECT_TRUE(isVersion(version, "beta")) << version;
        EXPECT_FALSE(isVersion(version, "stable")) << version;
    }
    for (const char* version :
         {"", "1.4", "1.4.2.3", "v1.4.2", "1.4.2-beta.0", "1.4.2-beta.01", "1.4.2-beta", "1.4.2 ", "1.4.2-rc.1",
          "1.4.2/../9", "1.4.2\n", "1.4.2-beta.1\r\n", "1.4.2\xE2\x80\xA8", "\xD9\xA1.4.2"}) {
        EXPECT_FALSE(isVersion(version, "stable")) << version;
        EXPECT_FALSE(isVersion(version, "beta")) << version;
    }
    EXPECT_FALSE(isVersion("1.4.2", "nightly"));
}

TEST(ReleaseChannelPolicy, NoChannelLeadsToAnother) {
    EXPECT_TRUE(manifestMatchesInstalledChannel("stable", "stable"));
    EXPECT_TRUE(manifestMatchesInstalledChannel("beta", "beta"));
    EXPECT_FALSE(manifestMatchesInstalledChannel("stable", "beta"));
    EXPECT_FALSE(manifestMatchesInstalledChannel("beta", "stable"));
    EXPECT_FALSE(manifestMatchesInstalledChannel("nightly", "nightly"));
    EXPECT_FALSE(manifestMatchesInstalledChannel("", ""));
}

ManifestPayload goodPayload() {
    const auto urls = releaseURLs(origin, "stable", "1.4.2");
    return {.channel = "stable",
            .version = "1.4.2",
            .appcastURL = urls->appcast,
            .releaseNotesURL = urls->releaseNotes,
            .dmgURL = urls->diskImage,
            .zipURL = urls->archive};
}

TEST(ReleaseChannelPolicy, BelievesAManifestOfTheVeryAddresses) {
    EXPECT_TRUE(manifestPayloadMatchesInstalledChannel(origin, "stable", goodPayload()));
    EXPECT_FALSE(manifestPayloadMatchesInstalledChannel(origin, "beta", goodPayload()));
    EXPECT_FALSE(manifestPayloadMatchesInstalledChannel("https://elsewhere.example", "stable", goodPayload()));
}

TEST(ReleaseChannelPolicy, OneWrongWordIsEnoughToDisbelieve) {
    using Change = std::function<void(ManifestPayload&)>;
    const std::pair<const char*, Change> cases[] = {
        {"channel", [](auto& m) { m.channel = "beta"; }},
        {"unknown channel", [](auto& m) { m.channel = "nightly"; }},
        {"version of the other channel", [](auto& m) { m.version = "1.4.2-beta.1"; }},
        {"version", [](auto& m) { m.version = "1.4.3"; }},
        {"no appcast", [](auto& m) { m.appcastURL.reset(); }},
        {"no notes", [](auto& m) { m.releaseNotesURL.reset(); }},
        {"no image", [](auto& m) { m.dmgURL.reset(); }},
        {"no archive", [](auto& m) { m.zipURL.reset(); }},
        {"appcast of the channel", [](auto& m) { m.appcastURL = *sparkleFeedURL(origin, "stable"); }},
        {"image of one processor",
         [](auto& m) { m.dmgURL = "https://updates.example/macos/stable/versions/1.4.2/Vesk-1.4.2-arm64.dmg"; }},
        {"query", [](auto& m) { *m.zipURL += "?a"; }},
        {"slash", [](auto& m) { *m.releaseNotesURL += "/"; }},
        {"case", [](auto& m) { m.appcastURL->replace(0, 5, "HTTPS"); }},
    };
    for (const auto& [name, change] : cases) {
        ManifestPayload payload = goodPayload();
        change(payload);
        EXPECT_FALSE(manifestPayloadMatchesInstalledChannel(origin, "stable", payload)) << name;
    }
}

TEST(ReleaseChannelPolicy, AStableVersionIsNoBeta) {
    const auto urls = releaseURLs(origin, "beta", "1.4.2");
    const ManifestPayload payload{.channel = "beta",
                                  .version = "1.4.2",
                                  .appcastURL = urls->appcast,
                                  .releaseNotesURL = urls->releaseNotes,
                                  .dmgURL = urls->diskImage,
                                  .zipURL = urls->archive};
    EXPECT_FALSE(manifestPayloadMatchesInstalledChannel(origin, "beta", payload));
}

} // namespace
} // namespace vesk
