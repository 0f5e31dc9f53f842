#include "VeskShellCore/BrokerPaths.hpp"
#include "tests/fakes/FakePlatform.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

Bundle bundleAt(std::string path, std::optional<std::string> executable = std::nullopt) {
    return {.path = std::move(path), .executablePath = std::move(executable), .resourcesPath = {}};
}

TEST(BrokerPaths, ExecutableRuleTakesTheMainBundlesExecutable) {
    test::FakePlatform platform;
    platform.bundle = bundleAt("/opt/Vesk.app", "/opt/Vesk.app/Contents/MacOS/broker");
    EXPECT_EQ(executableBrokerPath(platform), "/opt/Vesk.app/Contents/MacOS/broker");
}

TEST(BrokerPaths, ExecutableRuleFallsBackToArgumentZeroThenToTheProgramsName) {
    test::FakePlatform platform;
    platform.bundle = bundleAt("/opt/Vesk.app");
    platform.fakeEnvironment.startedAs = "./broker";
    EXPECT_EQ(executableBrokerPath(platform), "./broker");
    platform.fakeEnvironment.startedAs = std::nullopt;
    EXPECT_EQ(executableBrokerPath(platform), "VeskCapabilityBroker");
}

struct NameCase {
    std::string path;
    std::optional<std::string> executable;
    std::string name, shortName;
    std::optional<std::string> bundle;
};

TEST(BrokerPaths, BundleRules) {
    const NameCase cases[] = {
        {"/opt/Vesk.app", "/opt/Vesk.app/x", "Vesk.app", "Vesk.app", "/opt/Vesk.app"},
        {"/usr/local/bin", "/usr/local/bin/broker", "bin", "bin", std::nullopt},
        {"", "/usr/local/bin/broker", "/usr/local/bin/broker", "Vesk.app", std::nullopt},
        {"", std::nullopt, "Vesk.app", "Vesk.app", std::nullopt},
        {"/", "/broker", "/", "/", std::nullopt},
        {"/opt/Vesk.APP", std::nullopt, "Vesk.APP", "Vesk.APP", std::nullopt},
        {"/opt/Vesk.app.old", std::nullopt, "Vesk.app.old", "Vesk.app.old", std::nullopt},
        {"/opt/app", std::nullopt, "app", "app", std::nullopt},
        {"/opt/.app", std::nullopt, ".app", ".app", std::nullopt},
        {"/opt/Vesk.app/bin", std::nullopt, "bin", "bin", std::nullopt},
    };
    for (const NameCase& c : cases) {
        SCOPED_TRACE("'" + c.path + "'");
        const Bundle bundle = bundleAt(c.path, c.executable);
        EXPECT_EQ(bundleNameBrokerPath(bundle), c.name);
        EXPECT_EQ(shortBundleNameBrokerPath(bundle), c.shortName);
        EXPECT_EQ(bundlePath(bundle), c.bundle);
    }
}

} // namespace
} // namespace vesk
