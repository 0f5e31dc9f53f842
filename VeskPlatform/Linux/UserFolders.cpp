#include "VeskPlatform/Linux/UserFolders.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskSupport/FilePath.hpp"

#include <filesystem>

namespace vesk {

namespace {

struct Place {
    /// Null where only the base decides.
    const char* variable;
    const char* baseVariable;
    const char* baseUnderHome;
    const char* name;
};

std::string folder(Environment& environment, const Place& place) {
    const auto own = place.variable != nullptr ? environment.value(place.variable) : std::nullopt;
    if (own && !own->empty()) return *own;
    const auto base = environment.value(place.baseVariable);
    if (base && base->starts_with('/')) return *base + place.name;
    const std::string home = environment.homeDirectory();
    return home.empty() ? std::string() : home + place.baseUnderHome + place.name;
}

} // namespace

std::string calendarsFolder(Environment& environment) {
    return folder(environment, {"VESK_CALENDARS_DIR", "XDG_DATA_HOME", "/.local/share", "/vesk/calendars"});
}

std::string remindersFolder(Environment& environment) {
    return folder(environment, {"VESK_REMINDERS_DIR", "XDG_DATA_HOME", "/.local/share", "/vesk/reminders"});
}

std::string contactsFolder(Environment& environment) {
    return folder(environment, {"VESK_CONTACTS_DIR", "XDG_DATA_HOME", "/.local/share", "/vesk/contacts"});
}

std::string stateFolder(Environment& environment) {
    return folder(environment, {"VESK_STATE_DIR", "XDG_STATE_HOME", "/.local/state", "/vesk"});
}

std::string cacheFolder(Environment& environment) {
    return folder(environment, {"VESK_CACHE_DIR", "XDG_CACHE_HOME", "/.cache", "/vesk"});
}

std::string containersFolder(Environment& environment) {
    return folder(environment, {nullptr, "XDG_DATA_HOME", "/.local/share", "/vesk/containers"});
}

std::string mailFolder(Environment& environment) {
    const auto own = environment.value("VESK_MAIL_DIR");
    if (own && !own->empty()) return *own;
    const std::string home = environment.homeDirectory();
    if (home.empty()) return {};
    for (const char* name : {"/Maildir", "/Mail", "/.mail"}) {
        std::error_code error;
        if (std::filesystem::is_directory(home + name, error)) return home + name;
    }
    return {};
}

std::optional<std::string> cloudDriveFolder(Environment& environment) {
    const auto named = environment.value("VESK_CLOUD_DRIVE");
    if (!named || named->empty()) return std::nullopt;
    std::error_code gone; // the working folder; the path then stays relative
    const auto path = std::filesystem::absolute(*named, gone);
    return absolutePath(gone ? *named : path.native(), "/");
}

} // namespace vesk
