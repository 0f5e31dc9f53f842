#include "VeskPlatform/Linux/ReminderStoreOptions.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/Linux/UserFolders.hpp"
#include "VeskPlatform/LocaleSettings.hpp"

namespace vesk {

VdirReminderStoreOptions reminderStoreOptions(Environment& environment, LocaleSettings& localeSettings,
                                              std::function<void(const std::string&)> log) {
    return {.root = remindersFolder(environment), .timeZone = localeSettings.timeZone(), .log = std::move(log)};
}

} // namespace vesk
