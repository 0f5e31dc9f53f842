#include "VeskShellCore/SignedEntitlements.hpp"

#include "tests/fakes/FakePlatform.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using namespace VeskSignedEntitlements;

class SignedEntitlements : public ::testing::Test {
protected:
    FakePlatform platform;
    std::map<std::string, JsonValue::Object>& granted = platform.fakeBundleInformation.granted;
    const JsonValue::Object one{{"one", {true}}}, two{{"two", {true}}};

    JsonValue::Object readBundle() { return read(platform, platform.bundle); }
};

TEST_F(SignedEntitlements, OneFileIsRead) {
    granted["/bin/a"] = one;
    EXPECT_EQ(read(platform, "/bin/a"), one);
    EXPECT_EQ(read(platform, "/bin/b"), JsonValue::Object{});
}

TEST_F(SignedEntitlements, TheExecutableComesFirst) {
    granted[*platform.bundle.executablePath] = one;
    granted[platform.bundle.path] = two;
    EXPECT_EQ(readBundle(), one);
}

TEST_F(SignedEntitlements, AnExecutableWithoutAnyHasThoseOfItsBundle) {
    granted[platform.bundle.path] = two;
    EXPECT_EQ(readBundle(), two);
    granted[*platform.bundle.executablePath] = {};
    EXPECT_EQ(readBundle(), two);
    platform.bundle.executablePath.reset();
    EXPECT_EQ(readBundle(), two);
    granted.clear();
    EXPECT_EQ(readBundle(), JsonValue::Object{});
}

TEST_F(SignedEntitlements, OnlyTheBooleanTrueCounts) {
    const std::pair<JsonValue, bool> cases[] = {{{true}, true},
                                                {{false}, false},
                                                {{std::int64_t{1}}, false},
                                                {{std::string("true")}, false},
                                                {{JsonValue::Array{{true}}}, false},
                                                {{}, false}};
    for (const auto& [value, has] : cases) {
        granted[platform.bundle.path] = {{"key", value}};
        EXPECT_EQ(hasBoolean(platform, "key", platform.bundle), has) << writeJson(value);
    }
    EXPECT_FALSE(hasBoolean(platform, "other", platform.bundle));
}

} // namespace
} // namespace vesk::test
