#pragma once

#include "VeskPlatform/Linux/Vdir/VdirEventStore.hpp"

namespace vesk {

class Environment;
class LocaleSettings;

/// The calendar store that the user's environment describes: VESK_CALENDARS_DIR, VESK_CACHE_DIR, the current time zone,
/// and the user's own addresses from VESK_USER_ADDRESSES (divided by commas), else EMAIL.
VdirEventStoreOptions eventStoreOptions(Environment& environment, LocaleSettings& localeSettings,
                                        std::function<void(const std::string&)> log);

} // namespace vesk
