#pragma once

#include "VeskPlatform/LocaleSettings.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace vesk {

class Environment;

/// Where the system keeps its time zone; other places are for tests.
struct TimeZonePlaces {
    std::string localtime = "/etc/localtime";
    std::string timezone = "/etc/timezone";
    std::string database = "/usr/share/zoneinfo";
};

/// Region settings as the C library reads them. The time zone is TZ, else /etc/localtime, else /etc/timezone, else UTC.
/// The locale is that of collation, LC_ALL before LC_COLLATE before LANG, since it decides the order of lists.
class SystemLocaleSettings : public LocaleSettings {
public:
    explicit SystemLocaleSettings(Environment& environment, TimeZonePlaces places = {});
    std::string timeZone() override;
    std::string locale() override;

private:
    std::optional<std::string> zoneFromVariable(std::string_view text) const;
    std::optional<std::string> zoneFromLink(std::string path) const;
    std::optional<std::string> zoneFromText(const std::string& path) const;
    std::optional<std::string> zoneFromContents(const std::string& path) const;
    std::optional<std::string> zoneFromFile(const std::string& path) const;

    Environment& environment_;
    TimeZonePlaces places_;
};

/// The ICU identifier of a POSIX locale name: "de_DE.UTF-8@euro" is "de_DE", "sr_RS@latin" is "sr_Latn_RS", and "C",
/// "POSIX", an empty or a malformed name are "en_US_POSIX".
std::string icuLocale(std::string_view posixName);

} // namespace vesk
