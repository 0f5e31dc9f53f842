#include "VeskPlatform/Linux/CompanionSettingsOpener.hpp"

#include "VeskPlatform/Linux/ChildProcess.hpp"

#include <filesystem>

namespace vesk {

CompanionSettingsOpener::CompanionSettingsOpener(const std::string& runningExecutable)
    : companion_((std::filesystem::path(runningExecutable).parent_path() / "vesk").string()) {}

bool CompanionSettingsOpener::launchOpener(const std::string& url) {
    return startDetached({companion_, "consent", "page", url});
}

void CompanionSettingsOpener::openUrl(const std::string& url) {
    if (const auto opener = installedProgram("xdg-open")) startDetached({*opener, url});
}

} // namespace vesk
