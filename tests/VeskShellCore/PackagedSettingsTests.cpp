#include "VeskShellCore/PackagedSettings.hpp"
#include "tests/VeskShellCore/RecordTableWalk.hpp"

namespace vesk::test {

template <> RecordSample<AppSettings> sampleOf() {
    return {.name = "AppSettings",
            .record = {.onboardingCompleted = true,
                       .accountEmail = "dana@example.com",
                       .accountUserID = "user-1",
                       .defaultTimezone = "Europe/Berlin"},
            .optional = "onboarding_completed account_email account_user_id default_timezone"};
}

template <> RecordSample<ProfileSettings> sampleOf() {
    return {.name = "ProfileSettings",
            .record = {.preferredName = "Dana", .profession = "Gärtnerin", .city = "Bonn", .postalCode = "53111"},
            .optional = "preferred_name profession city postal_code"};
}

template <> RecordSample<TelegramSettings> sampleOf() {
    return {.name = "TelegramSettings",
            .record = {.allowedUserID = "4711",
                       .allowedChatID = "-100",
                       .allowedChatIDs = std::vector<std::string>{"-100", "-200"},
                       .allowedUsername = "dana_w"},
            .optional = "allowed_user_id allowed_chat_id allowed_chat_ids allowed_username"};
}

template <> RecordSample<AdminWebSettings> sampleOf() {
    return {.name = "AdminWebSettings",
            .record = {.enabled = true, .host = "127.0.0.1", .port = 8420},
            .optional = "enabled host port"};
}

template <> RecordSample<ModelSettings> sampleOf() {
    return {.name = "ModelSettings",
            .record = {.assistantModel = "large", .thinModel = "small", .imageSketchModel = "sketch"},
            .optional = "assistant_model thin_model image_sketch_model"};
}

template <> RecordSample<ProviderSettings> sampleOf() {
    return {.name = "ProviderSettings", .record = {.activeProvider = "main"}, .optional = "active_provider"};
}

template <> RecordSample<AuthSettings> sampleOf() {
    return {.name = "AuthSettings",
            .record = {.baseURL = "https://example.com/api", .appVersion = "1.4.0"},
            .optional = "base_url app_version"};
}

template <> RecordSample<PackagedSettings> sampleOf() {
    return {.name = "PackagedSettings",
            .record = {.schemaVersion = 1,
                       .app = AppSettings{.onboardingCompleted = true},
                       .profile = ProfileSettings{.preferredName = "Dana"},
                       .telegram = TelegramSettings{.allowedUserID = "4711"},
                       .adminWeb = AdminWebSettings{.enabled = true},
                       .models = ModelSettings{.assistantModel = "large"},
                       .providers = ProviderSettings{.activeProvider = "main"},
                       .auth = AuthSettings{.baseURL = "https://example.com/api"}},
            .required = "schema_version",
            .optional = "app profile telegram admin_web models providers auth"};
}

using AllRecords = testing::Types<AppSettings, ProfileSettings, TelegramSettings, AdminWebSettings, ModelSettings,
                                  ProviderSettings, AuthSettings, PackagedSettings>;
INSTANTIATE_TYPED_TEST_SUITE_P(PackagedSettings, RecordTable, AllRecords, RecordNames);

namespace {

PackagedSettings settings(std::string_view text) { return fromJson<PackagedSettings>(parseJson(text)); }

TEST(PackagedSettings, MayHoldTheVersionOfTheSchemaAlone) {
    EXPECT_EQ(settings(R"({"schema_version":1})"), PackagedSettings{.schemaVersion = 1});
    EXPECT_EQ(writeJson(toJson(PackagedSettings{.schemaVersion = 1})), "{\n  \"schema_version\" : 1\n}");
}

TEST(PackagedSettings, FailWithoutTheVersionOfTheSchema) {
    EXPECT_EQ(failureOf<PackagedSettings>(parseJson(R"({"app":{}})")), missing("schema_version"));
}

TEST(PackagedSettings, MayHoldEmptySections) {
    EXPECT_EQ(settings(R"({"schema_version":1,"app":{}})"),
              (PackagedSettings{.schemaVersion = 1, .app = AppSettings{}}));
    EXPECT_EQ(writeJson(toJson(PackagedSettings{.schemaVersion = 1, .app = AppSettings{}})),
              "{\n  \"app\" : {\n\n  },\n  \"schema_version\" : 1\n}");
}

TEST(PackagedSettings, KeepTheAllowedChatAndTheAllowedChatsApart) {
    const auto one = settings(R"({"schema_version":1,"telegram":{"allowed_chat_id":"7"}})").telegram;
    EXPECT_EQ(one, TelegramSettings{.allowedChatID = "7"});
    const auto many = settings(R"({"schema_version":1,"telegram":{"allowed_chat_ids":["7"]}})").telegram;
    EXPECT_EQ(many, TelegramSettings{.allowedChatIDs = std::vector<std::string>{"7"}});
}

TEST(PackagedSettings, NameThePathOfAMistypedFieldOfASection) {
    EXPECT_EQ(failureOf<PackagedSettings>(parseJson(R"({"schema_version":1,"admin_web":{"port":"80"}})")),
              mistyped("admin_web.port") + "a whole number.");
}

} // namespace

} // namespace vesk::test
