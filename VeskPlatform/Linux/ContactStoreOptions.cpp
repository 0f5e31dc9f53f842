#include "VeskPlatform/Linux/ContactStoreOptions.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/Linux/UserFolders.hpp"
#include "VeskPlatform/LocaleSettings.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>

namespace vesk {

namespace {

/// The region of a locale such as "de_DE" or "zh_Hant_TW"; empty where it has none.
std::string countryOf(const std::string& locale) {
    const auto isCountry = [](const std::string& part) {
        return part.size() == 2 && std::ranges::all_of(part, [](char c) { return c >= 'A' && c <= 'Z'; });
    };
    const std::vector<std::string> parts = split(locale.substr(0, locale.find('@')), '_');
    const auto country = std::ranges::find_if(parts, isCountry);
    return country == parts.end() ? "" : *country;
}

} // namespace

VcardContactStoreOptions contactStoreOptions(Environment& environment, LocaleSettings& localeSettings,
                                             std::function<void(const std::string&)> log) {
    return {.root = contactsFolder(environment),
            .cacheFolder = cacheFolder(environment),
            .country = countryOf(localeSettings.locale()),
            .log = std::move(log)};
}

} // namespace vesk
