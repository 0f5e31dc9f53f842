#include "VeskShellCore/ApplicationSupport.hpp"

#include "VeskSupport/Text.hpp"

namespace vesk {
namespace {

std::string pathIn(const std::string& folder, std::string_view name) {
    return folder + (folder.ends_with('/') ? "" : "/") + std::string(name);
}

} // namespace

std::optional<std::string> applicationSupportDirectory(Environment& environment) {
    if (auto named = trimmedOrAbsent(environment.value("VESK_APP_SUPPORT_DIR"))) return named;
    const std::string home = environment.homeDirectory();
    if (home.empty()) return std::nullopt;
    return pathIn(home, "Library/Application Support/Vesk");
}

std::optional<std::string> applicationSupportItem(Environment& environment, std::string_view name) {
    const auto folder = applicationSupportDirectory(environment);
    return folder ? std::optional(pathIn(*folder, name)) : std::nullopt;
}

std::string assistantDataItem(Environment& environment, std::string_view name) {
    return environment.homeDirectory().append("/Library/Application Support/Vesk/data/").append(name);
}

} // namespace vesk
