#include "VeskShellCore/ICloudCapabilitySupport.hpp"

#include "tests/fakes/FakePlatform.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using namespace VeskICloudCapabilitySupport;
using enum CapabilityAuthorizationState;

JsonValue list(std::initializer_list<const char*> texts) {
    JsonValue::Array array;
    for (const char* text : texts) array.push_back({std::string(text)});
    return {array};
}

JsonValue text(const char* value) { return {std::string(value)}; }

const std::string containers = "com.apple.developer.icloud-container-identifiers";
const std::string ubiquity = "com.apple.developer.ubiquity-container-identifiers";
const std::string services = "com.apple.developer.icloud-services";

class ICloudCapabilitySupport : public ::testing::Test {
protected:
    FakePlatform platform;
    JsonValue::Object& info = platform.fakeBundleInformation.dictionaries[platform.bundle.path];
    JsonValue::Object& rights = platform.fakeBundleInformation.granted[platform.bundle.path];

    ICloudBuildConfiguration configured() { return buildConfiguration(platform, platform.bundle); }
    std::optional<CapabilityStatus> status() { return configuredStatus(platform, platform.bundle); }

    void expectStatus(CapabilityAuthorizationState state, const std::string& detail,
                      const std::optional<std::string>& remediation) {
        EXPECT_EQ(status(), (CapabilityStatus{.kind = CapabilityKind::iCloud,
                                              .state = state,
                                              .detail = detail,
                                              .remediation = remediation,
                                              .sharedAuthorizationWith = {}}));
    }
    void expectMissingPart() {
        expectStatus(unavailable, "This copy of Vesk is missing part of its iCloud setup.",
                     "Rebuild Vesk with the correct Apple signing and iCloud setup.");
    }
    void expectSignIn() {
        expectStatus(notDetermined, "Sign in to iCloud Drive on this Mac to use iCloud with Vesk.",
                     "Open System Settings, sign in to iCloud, and turn on iCloud Drive.");
    }
};

TEST_F(ICloudCapabilitySupport, ABundleThatSaysNothingIsNotEnabled) {
    EXPECT_EQ(configured(), ICloudBuildConfiguration{});
    EXPECT_EQ(status(), std::nullopt);
    EXPECT_TRUE(platform.fakeCloudAccount.asked.empty());
}

TEST_F(ICloudCapabilitySupport, EachKeyIsReadTrimmed) {
    info = {{"VeskICloudEnabled", {true}},
            {"VeskICloudContainerIdentifier", text(" iCloud.vesk\n")},
            {"VeskICloudServices", list({" CloudDocuments ", " ", "CloudKit"})},
            {"VeskAppleTeamIdentifier", text(" TEAM ")}};
    EXPECT_EQ(configured(), (ICloudBuildConfiguration{.enabled = true,
                                                      .containerIdentifier = "iCloud.vesk",
                                                      .services = {"CloudDocuments", "CloudKit"},
                                                      .teamIdentifier = "TEAM"}));
}

TEST_F(ICloudCapabilitySupport, AContainerOrAServiceIsEnough) {
    const std::pair<JsonValue::Object, bool> cases[] = {
        {{{"VeskICloudEnabled", {true}}}, true},
        {{{"VeskICloudEnabled", {false}}}, false},
        {{{"VeskICloudEnabled", text("true")}}, false},
        {{{"VeskICloudEnabled", {std::int64_t{1}}}}, false},
        {{{"VeskICloudEnabled", {false}}, {"VeskICloudContainerIdentifier", text("c")}}, true},
        {{{"VeskICloudEnabled", {false}}, {"VeskICloudServices", list({"s"})}}, true},
        {{{"VeskICloudContainerIdentifier", text(" \t")}}, false},
        {{{"VeskICloudContainerIdentifier", list({"c"})}}, false},
        {{{"VeskICloudServices", list({" "})}}, false},
        {{{"VeskICloudServices", text("s")}}, false},
        {{{"VeskICloudServices", {JsonValue::Array{text("s"), {true}}}}}, false},
        {{{"VeskAppleTeamIdentifier", text("t")}}, false},
    };
    for (const auto& [dictionary, enabled] : cases) {
        info = dictionary;
        EXPECT_EQ(configured().enabled, enabled) << writeJson({dictionary});
    }
}

TEST_F(ICloudCapabilitySupport, BlankTextsAreAbsent) {
    info = {{"VeskICloudContainerIdentifier", text(" ")}, {"VeskAppleTeamIdentifier", text("\n")}};
    EXPECT_EQ(configured(), ICloudBuildConfiguration{});
    info = {{"VeskAppleTeamIdentifier", {std::int64_t{7}}}};
    EXPECT_EQ(configured().teamIdentifier, std::nullopt);
}

TEST_F(ICloudCapabilitySupport, RightsWithoutSettingsAreNotReady) {
    for (const std::string& key : {containers, ubiquity, services})
        for (const JsonValue& value : {list({"x"}), JsonValue{}, JsonValue{false}}) {
            rights = {{key, value}};
            expectStatus(unavailable, "This copy of Vesk is not ready to use iCloud yet.",
                         "Rebuild Vesk with the correct iCloud setup.");
        }
    rights = {{"com.apple.security.automation.apple-events", {true}}};
    EXPECT_EQ(status(), std::nullopt) << "another right";
}

TEST_F(ICloudCapabilitySupport, AContainerHasToBeGranted) {
    info = {{"VeskICloudContainerIdentifier", text(" c ")}};
    expectMissingPart();
    for (const JsonValue& value :
         {list({"C"}), list({"c.more"}), text("c"), JsonValue{JsonValue::Array{text("c"), {true}}}}) {
        rights = {{containers, value}};
        expectMissingPart();
    }
    rights = {{services, list({"c"})}};
    expectMissingPart();
    for (const std::string& key : {containers, ubiquity}) {
        rights = {{key, list({"other", " c "})}};
        expectSignIn();
    }
}

TEST_F(ICloudCapabilitySupport, EveryServiceHasToBeGranted) {
    info = {{"VeskICloudServices", list({"a", "b"})}};
    expectMissingPart();
    rights = {{services, list({"a"})}};
    expectMissingPart();
    rights = {{containers, list({"a", "b"})}};
    expectMissingPart();
    rights = {{services, list({"more", "b", "a"})}};
    expectSignIn();
    info["VeskICloudContainerIdentifier"] = text("c");
    expectMissingPart();
}

TEST_F(ICloudCapabilitySupport, TheFlagAloneAsksForNoRights) {
    info = {{"VeskICloudEnabled", {true}}};
    expectSignIn();
}

TEST_F(ICloudCapabilitySupport, AnExecutableWithoutRightsHasThoseOfItsBundle) {
    info = {{"VeskICloudContainerIdentifier", text("c")}};
    platform.fakeBundleInformation.granted[*platform.bundle.executablePath] = {};
    rights = {{containers, list({"c"})}};
    expectSignIn();
}

TEST_F(ICloudCapabilitySupport, TheContainerHasToBeReached) {
    info = {{"VeskICloudEnabled", {true}}};
    platform.fakeCloudAccount.signedIn = true;
    const std::string unreached = "Vesk is set up for iCloud, but it cannot reach iCloud on this Mac right now.";
    expectStatus(restricted, unreached, "Check iCloud Drive on this Mac and try again.");
    platform.fakeCloudAccount.containers["default"] = "/c";
    expectStatus(granted, "Vesk can use iCloud on this Mac.", std::nullopt);
    info["VeskICloudContainerIdentifier"] = text(" own ");
    rights = {{containers, list({"own"})}};
    expectStatus(restricted, unreached, "Check iCloud Drive on this Mac and try again.");
    platform.fakeCloudAccount.containers["own"] = "/o";
    expectStatus(granted, "Vesk can use iCloud on this Mac.", std::nullopt);
    EXPECT_EQ(platform.fakeCloudAccount.asked.front(), std::nullopt);
    EXPECT_EQ(platform.fakeCloudAccount.asked.back(), "own");
}

TEST_F(ICloudCapabilitySupport, WhoIsNotSignedInIsNotAskedForAContainer) {
    info = {{"VeskICloudEnabled", {true}}};
    expectSignIn();
    EXPECT_TRUE(platform.fakeCloudAccount.asked.empty());
}

} // namespace
} // namespace vesk::test
