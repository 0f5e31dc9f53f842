#pragma once

#include "VeskPlatform/Linux/Vdir/VdirReminderStore.hpp"

namespace vesk {

class Environment;
class LocaleSettings;

/// The to-do store that the user's environment describes: VESK_REMINDERS_DIR and the current time zone.
VdirReminderStoreOptions reminderStoreOptions(Environment& environment, LocaleSettings& localeSettings,
                                              std::function<void(const std::string&)> log);

} // namespace vesk
