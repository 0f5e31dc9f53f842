#pragma once

#include "VeskSupport/LocalCalendar.hpp"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>

namespace vesk::vdir {

using Zone = std::shared_ptr<const LocalCalendar>;

/// The zones that TZIDs mean. Safe from several threads.
class Zones {
public:
    /// `log` hears of TZIDs without a meaning, once each.
    Zones(Zone local, std::function<void(const std::string&)> log);

    const Zone& local() const { return local_; }
    const Zone& utc() const { return utc_; }

    /// An Olson name, a name that ends in one ("/vendor/Europe/Berlin") or a Windows name means that zone; else
    /// `definition`, the text of the file's VTIMEZONE of that name (empty where it has none); else the local zone.
    Zone find(const std::string& tzid, std::string_view definition);

    /// Whether the name alone tells the zone, so that nobody needs its definition.
    bool isNamed(const std::string& tzid);

private:
    Zone named(const std::string& tzid);

    std::mutex mutex_;
    Zone local_, utc_;
    std::function<void(const std::string&)> log_;
    std::map<std::string, Zone> byName_;
    std::map<std::string, Zone, std::less<>> byDefinition_;
    std::set<std::string> unknown_;
};

} // namespace vesk::vdir
