#include "VeskShellCore/ShellClientRun.hpp"

#include "VeskPlatform/BundleInformation.hpp"
#include "VeskPlatform/Environment.hpp"
#include "VeskShellCore/ReleaseIdentity.hpp"

#include <array>
#include <map>
#include <string_view>
#include <utility>

namespace vesk {
namespace {

/// Only what the bundle tells is set: the rest stays as it was inherited.
std::map<std::string, std::string> currentAppReleaseEnvironment(Platform& platform) {
    using Names = std::pair<const char*, const char*>;
    static constexpr std::array<Names, 3> names{Names{"VESK_APP_VERSION", "CFBundleShortVersionString"},
                                                Names{"VESK_APP_BUILD_VERSION", "CFBundleVersion"},
                                                Names{"VESK_RELEASE_CHANNEL", "VeskReleaseChannel"}};
    const auto information = platform.bundleInformation().informationDictionary(platform.mainBundle());
    std::map<std::string, std::string> found;
    for (const auto& [variable, key] : names)
        if (auto value = trimmedBundleString(information, key)) found.emplace(variable, *std::move(value));
    return found;
}

} // namespace

CommandRun shellClientRun(Platform& platform, const VeskRuntimeDescriptor& runtime, const std::string& script,
                          std::vector<std::string> arguments, const std::optional<JsonValue>& payload) {
    CommandRun run;
    run.area = "shell-client";
    if (payload) run.input = writeJson(*payload);
    run.launch = {.executable = script,
                  .arguments = std::move(arguments),
                  .workingDirectory = runtime.runtimeRoot,
                  .variables = currentAppReleaseEnvironment(platform),
                  .takesInput = payload.has_value()};
    run.launch.variables["VESK_RUNTIME_MANIFEST"] = runtime.manifestPath;
    run.subject = "script=" + script + " ";
    run.surroundings = " authBaseURL=" + platform.environment().value("VESK_AUTH_BASE_URL").value_or("(unset)");
    return run;
}

} // namespace vesk
