#include "VeskShellCore/VeskRuntimeLocator.hpp"
#include "VeskShellCore/VeskShellError.hpp"
#include "tests/fakes/FakePlatform.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

using Source = VeskRuntimeDescriptor::Source;

const std::string bundled = "/Applications/Vesk.app/Contents/Resources/vesk-runtime";

class RuntimeLocator : public testing::Test {
protected:
    static std::string manifest(const std::string& daemon = "bin/vesk-daemon",
                                const std::string& agent = "bin/vesk-agent", const std::string& rest = "") {
        return R"({"runtime_version":"1","daemon_binary":")" + daemon + R"(","agent_binary":")" + agent
               + R"(","default_skill_seed_manifest":"s","connector_catalog":"c","platform_tool_catalog":"t")" + rest
               + "}";
    }
    void addRuntime(const std::string& root, const std::string& content = manifest()) {
        platform.fakeFileReader.files[root + "/manifest.json"] = content;
        files.existing.insert(root + "/manifest.json");
        files.executable.insert({root + "/bin/vesk-daemon", root + "/bin/vesk-agent"});
    }
    VeskRuntimeDescriptor resolve(std::optional<bool> prefer = std::nullopt, const std::string& directory = "/w/d") {
        return VeskRuntimeLocator::resolve(platform, directory, prefer);
    }
    std::string failure(const std::string& content) {
        addRuntime("/r", content);
        return failureOf([&] { VeskRuntimeLocator::descriptor(platform, Source::repoBuild, "/r/manifest.json"); });
    }
    template <class Work> static std::string failureOf(Work work) {
        try {
            work();
        } catch (const ErrorRecord& error) {
            const std::string prefix = "Invalid packaged runtime manifest: ", text = error.description();
            return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
        }
        return "no failure";
    }
    void runBare() {
        platform.bundle = {.path = "/usr/bin", .executablePath = "/usr/bin/broker", .resourcesPath = std::nullopt};
    }

    test::FakePlatform platform;
    test::FakeFileManager& files = platform.fakeFileManager;
    std::map<std::string, std::string>& variables = platform.fakeEnvironment.variables;
};

TEST_F(RuntimeLocator, NamesEveryPath) {
    addRuntime("/r");
    const auto found = VeskRuntimeLocator::descriptor(platform, Source::explicitEnvironment, "/r/manifest.json");
    const VeskRuntimeDescriptor expected{.source = Source::explicitEnvironment,
                                         .manifestPath = "/r/manifest.json",
                                         .runtimeRoot = "/r",
                                         .daemonPath = "/r/bin/vesk-daemon",
                                         .agentPath = "/r/bin/vesk-agent",
                                         .bootstrapCLIPath = "/r/bin/vesk-daemon",
                                         .settingsCLIPath = "/r/bin/vesk-daemon",
                                         .launcherPath = "/r/bin/vesk-launcher"};
    EXPECT_EQ(found, expected);
}

TEST_F(RuntimeLocator, SourcesAndTheirLabels) {
    const std::tuple<Source, const char*, const char*> cases[] = {
        {Source::explicitEnvironment, "env", "Explicit runtime manifest"},
        {Source::bundledResource, "bundle", "Bundled runtime"},
        {Source::repoBuild, "repo", "Repo packaged runtime"}};
    for (const auto& [source, raw, label] : cases) {
        EXPECT_EQ(rawValue(source), raw);
        VeskRuntimeDescriptor descriptor;
        descriptor.source = source;
        EXPECT_EQ(descriptor.sourceLabel(), label);
    }
    EXPECT_EQ(fromRawValue<Source>("other"), std::nullopt);
}

TEST_F(RuntimeLocator, AnApplicationPrefersItsOwnRuntime) {
    variables["VESK_RUNTIME_MANIFEST"] = " /e/manifest.json\n";
    addRuntime("/e");
    addRuntime(bundled);
    EXPECT_EQ(resolve().source, Source::bundledResource);
    EXPECT_EQ(resolve(false).source, Source::explicitEnvironment);
    variables["VESK_SHELL_ALLOW_ENV_OVERRIDE"] = "1";
    EXPECT_EQ(resolve().source, Source::explicitEnvironment);
    EXPECT_EQ(resolve(true).source, Source::bundledResource);
    for (const char* other : {"true", "01", "", " 1"}) {
        variables["VESK_SHELL_ALLOW_ENV_OVERRIDE"] = other;
        EXPECT_EQ(resolve().source, Source::bundledResource) << other;
    }
}

TEST_F(RuntimeLocator, ABareProgramPrefersWhatTheEnvironmentNames) {
    runBare();
    platform.bundle.resourcesPath = "/usr/share/vesk";
    variables["VESK_RUNTIME_MANIFEST"] = "/e/manifest.json";
    addRuntime("/e");
    addRuntime("/usr/share/vesk/vesk-runtime");
    EXPECT_EQ(resolve().source, Source::explicitEnvironment);
    EXPECT_EQ(resolve(true).source, Source::bundledResource);
}

TEST_F(RuntimeLocator, BlankVariablesCountAsUnset) {
    variables["VESK_RUNTIME_MANIFEST"] = " \n";
    for (const bool prefer : {true, false})
        EXPECT_EQ(failureOf([&] { resolve(prefer, "/"); }),
                  "Unable to find a packaged Vesk runtime manifest. Checked: " + bundled
                      + "/manifest.json, /.build/vesk-runtime/manifest.json");
}

TEST_F(RuntimeLocator, BuildsAreLookedForUpwards) {
    addRuntime("/w/.build/vesk-runtime");
    EXPECT_EQ(resolve().source, Source::repoBuild);
    EXPECT_EQ(resolve().runtimeRoot, "/w/.build/vesk-runtime");
    addRuntime("/w/d/.build/vesk-runtime");
    EXPECT_EQ(resolve().runtimeRoot, "/w/d/.build/vesk-runtime");
}

TEST_F(RuntimeLocator, AnUnsuccessfulSearchTellsWhereItLooked) {
    variables["VESK_RUNTIME_MANIFEST"] = "/e/manifest.json";
    EXPECT_EQ(failureOf([&] { resolve(); }),
              "Unable to find a packaged Vesk runtime manifest. Checked: " + bundled
                  + "/manifest.json, /e/manifest.json, /w/d/.build/vesk-runtime/manifest.json, "
                    "/w/.build/vesk-runtime/manifest.json, /.build/vesk-runtime/manifest.json");
    runBare();
    EXPECT_EQ(failureOf([&] { resolve(std::nullopt, "/"); }),
              "Unable to find a packaged Vesk runtime manifest. Checked: /e/manifest.json, "
              "/.build/vesk-runtime/manifest.json");
}

TEST_F(RuntimeLocator, LinksAreResolvedBeforeLookingUpwards) {
    files.links["/w/link"] = "/real/place";
    EXPECT_EQ(VeskRuntimeLocator::ascendingDirectories(platform, "/w/x/../link/"),
              (std::vector<std::string>{"/real/place", "/real", "/"}));
    EXPECT_EQ(VeskRuntimeLocator::ascendingDirectories(platform, "/"), (std::vector<std::string>{"/"}));
}

TEST_F(RuntimeLocator, ABadManifestHidesTheGoodOnesBehindIt) {
    addRuntime(bundled, "{}");
    addRuntime("/w/d/.build/vesk-runtime");
    EXPECT_NE(failureOf([&] { resolve(); }), "no failure");
}

TEST_F(RuntimeLocator, AManifestThatCannotBeReadIsTheFileSystemsError) {
    files.existing.insert("/r/manifest.json");
    platform.fakeFileReader.folders.insert("/r/manifest.json");
    EXPECT_THROW(VeskRuntimeLocator::descriptor(platform, Source::repoBuild, "/r/manifest.json"), PosixError);
}

TEST_F(RuntimeLocator, FaultsOfAManifestInOrder) {
    EXPECT_NE(failure("{"), "no failure");
    for (const char* root : {"[]", "1", "\"x\""}) EXPECT_EQ(failure(root), "manifest root must be an object") << root;
    EXPECT_EQ(failure(R"({"zeta":1,"alpha":2})"), "unsupported fields: alpha, zeta");
    EXPECT_EQ(failure(manifest("bin/x", "bin/y", R"(,"more":1)")), "unsupported fields: more");
    for (const char* key : {"runtime_version", "daemon_binary", "agent_binary", "default_skill_seed_manifest",
                            "connector_catalog", "platform_tool_catalog"}) {
        std::string without = manifest();
        without.replace(without.find(key), std::string(key).size(), "runtime_version");
        if (std::string(key) == "runtime_version") without = R"({"daemon_binary":"bin/vesk-daemon"})";
        EXPECT_NE(failure(without).find(key), std::string::npos) << failure(without);
    }
    EXPECT_EQ(failure(manifest("bin/x", "bin/y")), "daemon_binary must be bin/vesk-daemon");
    EXPECT_EQ(failure(manifest("bin/vesk-daemon", "bin/y")), "agent_binary must be bin/vesk-agent");
}

TEST_F(RuntimeLocator, BothProgramsMustRun) {
    addRuntime("/r");
    files.executable.erase("/r/bin/vesk-agent");
    const auto look = [&] { VeskRuntimeLocator::descriptor(platform, Source::repoBuild, "/r/manifest.json"); };
    EXPECT_EQ(failureOf(look), "agent_binary is not executable at /r/bin/vesk-agent");
    files.executable.clear();
    EXPECT_EQ(failureOf(look), "daemon_binary is not executable at /r/bin/vesk-daemon");
}

/// The working directory was removed.
class GoneFolder : public test::FakeFileManager {
public:
    std::string currentDirectoryPath() override { throw PosixError(ENOENT, "."); }
};

class NowherePlatform : public test::FakePlatform {
public:
    FileManager& fileManager() override { return files; }

    GoneFolder files;
};

TEST_F(RuntimeLocator, AnAbsolutePathNeedsNoWorkingDirectory) {
    NowherePlatform nowhere;
    nowhere.fakeEnvironment.variables["VESK_RUNTIME_MANIFEST"] = "/r/manifest.json";
    nowhere.bundle = {.path = "/usr/bin", .executablePath = "/usr/bin/broker", .resourcesPath = std::nullopt};
    nowhere.fakeFileReader.files["/r/manifest.json"] = manifest();
    nowhere.files.existing = {"/r/manifest.json"};
    nowhere.files.executable = {"/r/bin/vesk-daemon", "/r/bin/vesk-agent"};
    EXPECT_EQ(VeskRuntimeLocator::resolve(nowhere, "/").manifestPath, "/r/manifest.json");
    nowhere.fakeEnvironment.variables["VESK_RUNTIME_MANIFEST"] = "r/manifest.json";
    EXPECT_THROW(VeskRuntimeLocator::resolve(nowhere, "/"), PosixError);
}

} // namespace
} // namespace vesk
