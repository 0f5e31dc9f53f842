#include "VeskShellCore/AppUpdateActivationRecord.hpp"
#include "tests/VeskShellCore/GoldenRecords.hpp"
#include "tests/VeskShellCore/UpdateRecords.hpp"

namespace vesk {
namespace {

TEST(AppUpdateReleaseIdentityTests, ItsPartsAreTrimmedWhenGiven) {
    EXPECT_EQ(AppUpdateReleaseIdentity(" 1.4.0\n", "\t212", "stable\u00A0"),
              AppUpdateReleaseIdentity("1.4.0", "212", "stable"));
    EXPECT_EQ(AppUpdateReleaseIdentity(" 1.4 beta ", "2", "s").version, "1.4 beta");
}

TEST(AppUpdateReleaseIdentityTests, ItsPartsAreTrimmedWhenRead) {
    const auto identity =
        fromJson<AppUpdateReleaseIdentity>(parseJson(R"({"version":" 1.4.0\n","build":"\t212","channel":"stable "})"));
    EXPECT_EQ(identity, AppUpdateReleaseIdentity("1.4.0", "212", "stable"));
    std::vector<AppUpdateReleaseIdentity> list;
    JsonValue document = parseJson(R"([{"version":" a","build":" b","channel":" c"}])");
    records::read(document, records::Path(), list);
    EXPECT_EQ(list, std::vector{AppUpdateReleaseIdentity("a", "b", "c")});
}

TEST(AppUpdateReleaseIdentityTests, EachPartMakesADifference) {
    const AppUpdateReleaseIdentity identity("1.4.0", "212", "stable");
    EXPECT_NE(identity, AppUpdateReleaseIdentity("1.4.1", "212", "stable"));
    EXPECT_NE(identity, AppUpdateReleaseIdentity("1.4.0", "213", "stable"));
    EXPECT_NE(identity, AppUpdateReleaseIdentity("1.4.0", "212", "beta"));
}

TEST(AppUpdateReleaseIdentityTests, TheLiteral) {
    const std::string json = R"({
  "build" : "212",
  "channel" : "stable",
  "version" : "1.4.0"
})";
    test::expectGolden<AppUpdateReleaseIdentity>(json);
    test::expectRequired<AppUpdateReleaseIdentity>(json, {"version", "build", "channel"});
}

TEST(AppUpdateActivationRecordTests, TheLiteralIsTheRecord) {
    EXPECT_EQ(test::expectGolden<AppUpdateActivationRecord>(test::updateRecordLiteral), test::updateRecord());
}

TEST(AppUpdateActivationRecordTests, AbsentOptionalsAreLeftOut) {
    AppUpdateActivationRecord record = test::updateRecord();
    record.assistantPIDBeforeUpdate.reset();
    record.lastErrorClass.reset();
    const std::string text = writeJson(toJson(record));
    EXPECT_EQ(text.find("assistant_pid_before_update"), std::string::npos);
    EXPECT_EQ(text.find("last_error_class"), std::string::npos);
    EXPECT_EQ(fromJson<AppUpdateActivationRecord>(parseJson(text)), record);
}

/// What becomes of the literal with the key at another value, or without it.
bool isReadWith(std::string_view key, const std::optional<JsonValue>& value) {
    auto object = std::get<JsonValue::Object>(parseJson(test::updateRecordLiteral).value);
    object.erase(object.find(key));
    if (value) object.emplace(key, *value);
    try {
        fromJson<AppUpdateActivationRecord>({object});
        return true;
    } catch (const DecodingError&) {
        return false;
    }
}

TEST(AppUpdateActivationRecordTests, EachKeyIsNeededButForTheOptionalOnes) {
    const auto expectKey = [](const auto& field) {
        const bool mayBeAbsent = field.key == "assistant_pid_before_update" || field.key == "last_error_class";
        EXPECT_EQ(isReadWith(field.key, std::nullopt), mayBeAbsent) << field.key;
        EXPECT_EQ(isReadWith(field.key, JsonValue{nullptr}), mayBeAbsent) << field.key;
        EXPECT_FALSE(isReadWith(field.key, JsonValue{JsonValue::Array{}})) << field.key;
    };
    std::apply([&](const auto&... field) { (expectKey(field), ...); }, recordTable<AppUpdateActivationRecord>);
}

TEST(AppUpdateActivationRecordTests, UnknownKeysArePassedOver) {
    auto object = std::get<JsonValue::Object>(parseJson(test::updateRecordLiteral).value);
    object.emplace("later", JsonValue{true});
    EXPECT_EQ(fromJson<AppUpdateActivationRecord>({object}), test::updateRecord());
}

TEST(AppUpdateActivationRecordTests, DatesHaveNoFractionAndAreWrittenInUtc) {
    EXPECT_FALSE(isReadWith("created_at", JsonValue{std::string("2026-04-26T14:03:22.5Z")}));
    EXPECT_FALSE(isReadWith("updated_at", JsonValue{std::string("2026-04-26T14:03:22")}));
    EXPECT_FALSE(isReadWith("updated_at", JsonValue{std::int64_t{1777212202}}));
    EXPECT_TRUE(isReadWith("created_at", JsonValue{std::string("2026-04-26T16:03:22+02:00")}));
    AppUpdateActivationRecord record = test::updateRecord();
    record.createdAt += std::chrono::milliseconds(999);
    EXPECT_EQ(writeJson(toJson(record)), test::updateRecordLiteral);
}

TEST(AppUpdateActivationRecordTests, PhasesHaveTheirWords) {
    EXPECT_TRUE(isReadWith("phase", JsonValue{std::string("activation_failed")}));
    EXPECT_FALSE(isReadWith("phase", JsonValue{std::string("activationFailed")}));
    using enum AppUpdateActivationPhase;
    EXPECT_EQ(rawValue(preparingRelaunch), "preparing_relaunch");
    EXPECT_EQ(rawValue(assistantStopped), "assistant_stopped");
    EXPECT_EQ(rawValue(sparkleHandoff), "sparkle_handoff");
    EXPECT_EQ(rawValue(recoveringAfterRelaunch), "recovering_after_relaunch");
    EXPECT_EQ(rawValue(activationFailed), "activation_failed");
}

TEST(AppUpdateActivationRecordTests, OneChannelServesBothIdentities) {
    AppUpdateActivationRecord record = test::updateRecord();
    record.channel = " stable\n";
    EXPECT_EQ(record.sourceIdentity(), AppUpdateReleaseIdentity("1.4.0", "212", "stable"));
    EXPECT_EQ(record.targetIdentity(), AppUpdateReleaseIdentity("1.5.0", "230", "stable"));
}

} // namespace
} // namespace vesk
