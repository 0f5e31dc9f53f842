#include "VeskPlatform/Linux/EventStoreOptions.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/Linux/UserFolders.hpp"
#include "VeskPlatform/LocaleSettings.hpp"
#include "VeskSupport/Text.hpp"

namespace vesk {

namespace {

std::vector<std::string> userAddresses(Environment& environment) {
    if (const auto list = environment.value("VESK_USER_ADDRESSES")) return split(*list, ',');
    const auto single = environment.value("EMAIL");
    return single ? std::vector{*single} : std::vector<std::string>{};
}

} // namespace

VdirEventStoreOptions eventStoreOptions(Environment& environment, LocaleSettings& localeSettings,
                                        std::function<void(const std::string&)> log) {
    return {.root = calendarsFolder(environment),
            .cacheFolder = cacheFolder(environment),
            .timeZone = localeSettings.timeZone(),
            .userAddresses = userAddresses(environment),
            .log = std::move(log)};
}

} // namespace vesk
