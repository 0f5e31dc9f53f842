#include "VeskPlatform/Linux/Vdir/Zones.hpp"

#include "VeskSupport/Text.hpp"

#include <optional>

namespace vesk::vdir {
namespace {

/// The Olson name that `tzid` is, or ends in behind a slash.
std::optional<std::string> olsonName(std::string_view tzid) {
    while (true) {
        if (LocalCalendar::isKnownZone(std::string(tzid))) return std::string(tzid);
        const std::size_t slash = tzid.find('/');
        if (slash == std::string_view::npos) return std::nullopt;
        tzid.remove_prefix(slash + 1);
    }
}

constexpr const char* unknownZone = "calendar-store event zone=unknown using=local";

std::string unquoted(std::string_view tzid) {
    tzid = trimmed(tzid);
    if (tzid.size() >= 2 && tzid.front() == '"' && tzid.back() == '"') tzid = tzid.substr(1, tzid.size() - 2);
    return std::string(tzid);
}

} // namespace

Zones::Zones(Zone local, std::function<void(const std::string&)> log)
    : local_(std::move(local)), utc_(std::make_shared<LocalCalendar>("UTC")), log_(std::move(log)) {}

Zone Zones::named(const std::string& tzid) {
    const auto known = byName_.find(tzid);
    if (known != byName_.end()) return known->second;
    const std::string name = unquoted(tzid);
    auto identifier = olsonName(name);
    if (!identifier) identifier = LocalCalendar::zoneForWindowsName(name);
    Zone zone = identifier ? std::make_shared<LocalCalendar>(*identifier) : nullptr;
    byName_.emplace(tzid, zone);
    return zone;
}

bool Zones::isNamed(const std::string& tzid) {
    const std::lock_guard lock(mutex_);
    return named(tzid) != nullptr;
}

Zone Zones::find(const std::string& tzid, std::string_view definition) {
    const std::lock_guard lock(mutex_);
    if (Zone zone = named(tzid)) return zone;
    if (definition.empty()) {
        if (unknown_.insert(tzid).second) log_(unknownZone);
        return local_;
    }
    const auto known = byDefinition_.find(definition);
    if (known != byDefinition_.end()) return known->second;
    Zone zone = local_;
    if (auto defined = LocalCalendar::fromVTimeZone(std::string(definition)))
        zone = std::make_shared<LocalCalendar>(std::move(*defined));
    else
        log_(unknownZone);
    byDefinition_.emplace(definition, zone);
    return zone;
}

} // namespace vesk::vdir
