#include "VeskSupport/LocalCalendar.hpp"

#include "VeskSupport/Iso8601.hpp"
#include "VeskSupport/PosixZone.hpp"

#include <string_view>
#include <unicode/basictz.h>
#include <unicode/rbtz.h>
#include <unicode/timezone.h>
#include <unicode/vtzone.h>

namespace vesk {

struct LocalCalendar::Zone {
    std::unique_ptr<icu::BasicTimeZone> rules;
};

namespace {

using namespace std::chrono;

UDate toUDate(Instant instant) { return static_cast<double>(instant.time_since_epoch().count()); }

icu::UnicodeString toUnicode(const std::string& text) { return icu::UnicodeString::fromUTF8(text); }

std::unique_ptr<icu::BasicTimeZone> basic(icu::TimeZone* zone) {
    std::unique_ptr<icu::TimeZone> owned(zone);
    auto* result = dynamic_cast<icu::BasicTimeZone*>(owned.get());
    if (result != nullptr) (void)owned.release();
    return std::unique_ptr<icu::BasicTimeZone>(result);
}

std::int32_t toMilliseconds(seconds time) { return static_cast<std::int32_t>(milliseconds(time).count()); }

std::unique_ptr<icu::DateTimeRule> dateRule(const PosixZoneChange& change) {
    const std::int32_t time = toMilliseconds(change.time);
    constexpr auto wall = icu::DateTimeRule::WALL_TIME;
    // ICU counts on from a day beyond the end of its month, which makes days of the year out of days of January.
    if (change.form == PosixZoneChange::Form::dayOfYear)
        return std::make_unique<icu::DateTimeRule>(UCAL_JANUARY, change.day + 1, time, wall);
    if (change.form == PosixZoneChange::Form::dayOfCommonYear) {
        const year_month_day day{sys_days{year{1970} / 1 / 1} + days(change.day - 1)};
        return std::make_unique<icu::DateTimeRule>(static_cast<std::int32_t>(unsigned{day.month()}) - 1,
                                                   static_cast<std::int32_t>(unsigned{day.day()}), time, wall);
    }
    const int week = change.week == 5 ? -1 : change.week;
    return std::make_unique<icu::DateTimeRule>(change.month - 1, week, change.weekday + 1, time, wall);
}

std::unique_ptr<icu::BasicTimeZone> zoneOfRules(const icu::UnicodeString& name, const PosixZone& zone) {
    const std::int32_t standard = toMilliseconds(zone.offset);
    auto result = std::make_unique<icu::RuleBasedTimeZone>(name, new icu::InitialTimeZoneRule(name, standard, 0));
    if (!zone.saving) return result;
    const auto addRule = [&](std::int32_t saving, const PosixZoneChange& change) {
        UErrorCode status = U_ZERO_ERROR;
        result->addTransitionRule(new icu::AnnualTimeZoneRule(name, standard, saving, dateRule(change).release(), 1,
                                                              icu::AnnualTimeZoneRule::MAX_YEAR),
                                  status);
    };
    addRule(toMilliseconds(zone.saving->offset - zone.offset), zone.saving->start);
    addRule(0, zone.saving->end);
    UErrorCode status = U_ZERO_ERROR;
    result->complete(status);
    return U_SUCCESS(status) ? std::move(result) : nullptr;
}

std::unique_ptr<icu::BasicTimeZone> zoneNamed(const std::string& identifier) {
    auto zone = basic(icu::TimeZone::createTimeZone(toUnicode(identifier)));
    icu::UnicodeString name;
    const auto unknown = [&] {
        return zone == nullptr || zone->getID(name) == icu::UnicodeString(UCAL_UNKNOWN_ZONE_ID);
    };
    if (!unknown()) return zone;
    const auto rules = parsePosixZone(identifier);
    zone = rules ? zoneOfRules(toUnicode(identifier), *rules) : nullptr;
    if (unknown()) zone = basic(icu::TimeZone::createTimeZone(icu::UnicodeString("UTC")));
    return zone;
}

seconds localOffset(const icu::BasicTimeZone& zone, WallTime wall, UTimeZoneLocalOption option) {
    std::int32_t raw = 0, dst = 0;
    UErrorCode status = U_ZERO_ERROR;
    const auto date = static_cast<double>(wall.time_since_epoch().count()) * 1000.0;
    zone.getOffsetFromLocal(date, option, option, raw, dst, status);
    return duration_cast<seconds>(milliseconds(raw + dst));
}

/// The definition with its offsets as +hhmm where they have no seconds: many programs read no others. ICU always writes
/// the longer form of RFC 5545, section 3.3.14.
std::string withShortOffsets(std::string text) {
    constexpr std::size_t longForm = std::string_view("+hhmmss").size();
    for (const std::string_view name : {"\nTZOFFSETFROM:", "\nTZOFFSETTO:"})
        for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at)) {
            at += name.size();
            const std::size_t length = text.find_first_of("\r\n", at) - at;
            if (length == longForm && text.compare(at + longForm - 2, 2, "00") == 0) text.erase(at + longForm - 2, 2);
        }
    return text;
}

} // namespace

LocalCalendar::LocalCalendar(const std::string& zoneIdentifier)
    : LocalCalendar(std::make_unique<Zone>(Zone{zoneNamed(zoneIdentifier)}), zoneIdentifier) {}

LocalCalendar::LocalCalendar(std::unique_ptr<Zone> zone, std::string zoneIdentifier)
    : zone_(std::move(zone)), zoneIdentifier_(std::move(zoneIdentifier)) {}

LocalCalendar::LocalCalendar(LocalCalendar&&) noexcept = default;
LocalCalendar& LocalCalendar::operator=(LocalCalendar&&) noexcept = default;
LocalCalendar::~LocalCalendar() = default;

std::optional<LocalCalendar> LocalCalendar::fromVTimeZone(const std::string& component) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BasicTimeZone> zone(icu::VTimeZone::createVTimeZone(toUnicode(component), status));
    if (U_FAILURE(status) || zone == nullptr) return std::nullopt;
    icu::UnicodeString name;
    zone->getID(name);
    if (name.isEmpty()) return std::nullopt; // a component without usable rules: ICU names its zones last
    std::string identifier;
    name.toUTF8String(identifier);
    return LocalCalendar(std::make_unique<Zone>(Zone{std::move(zone)}), std::move(identifier));
}

bool LocalCalendar::isKnownZone(const std::string& zoneIdentifier) {
    if (zoneIdentifier.empty()) return false;
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString canonical;
    UBool isSystem = false;
    icu::TimeZone::getCanonicalID(toUnicode(zoneIdentifier), canonical, isSystem, status);
    return U_SUCCESS(status) && isSystem;
}

std::optional<std::string> LocalCalendar::zoneForWindowsName(const std::string& windowsName) {
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString identifier;
    icu::TimeZone::getIDForWindowsID(toUnicode(windowsName), nullptr, identifier, status);
    if (U_FAILURE(status) || identifier.isEmpty()) return std::nullopt;
    std::string result;
    identifier.toUTF8String(result);
    return result;
}

seconds LocalCalendar::offset(Instant instant) const {
    std::int32_t raw = 0, dst = 0;
    UErrorCode status = U_ZERO_ERROR;
    zone_->rules->getOffset(toUDate(instant), false, raw, dst, status);
    return duration_cast<seconds>(milliseconds(raw + dst));
}

WallTime LocalCalendar::wallTime(Instant instant) const {
    return WallTime{floor<seconds>(instant).time_since_epoch() + offset(instant)};
}

WallTimeMeaning LocalCalendar::meaning(WallTime wall) const {
    const seconds before = localOffset(*zone_->rules, wall, UCAL_TZ_LOCAL_FORMER);
    const seconds after = localOffset(*zone_->rules, wall, UCAL_TZ_LOCAL_LATTER);
    const Instant withBefore{wall.time_since_epoch() - before}, withAfter{wall.time_since_epoch() - after};
    if (before == after) return {WallTimeKind::unique, withBefore, withBefore};
    const auto kind = before > after ? WallTimeKind::repeated : WallTimeKind::skipped;
    return {kind, std::min(withBefore, withAfter), std::max(withBefore, withAfter)};
}

Instant LocalCalendar::instant(WallTime wall) const {
    const WallTimeMeaning m = meaning(wall);
    return m.kind == WallTimeKind::skipped ? m.later : m.earlier;
}

Instant LocalCalendar::startOfDay(WallDay day) const {
    const WallTimeMeaning midnight = meaning(WallTime{day});
    if (midnight.kind != WallTimeKind::skipped) return midnight.earlier;
    UDate transition = 0;
    icu::TimeZoneTransition change;
    // The gap that swallows midnight: the day starts at the change itself.
    if (zone_->rules->getPreviousTransition(toUDate(midnight.later), true, change))
        transition = change.getTime();
    else
        return midnight.later;
    return Instant{milliseconds(static_cast<std::int64_t>(transition))};
}

Instant LocalCalendar::startOfDay(Instant instant) const { return startOfDay(floor<days>(wallTime(instant))); }

Instant LocalCalendar::addDays(Instant start, int count) const {
    const WallTime wall = wallTime(start);
    const WallDay day = floor<days>(wall);
    const auto subsecond = start - floor<seconds>(start);
    if (startOfDay(day) == start) return startOfDay(day + days(count));
    return instant(wall + days(count)) + subsecond;
}

std::string LocalCalendar::vTimeZoneText(Instant start) const {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::VTimeZone> zone(icu::VTimeZone::createVTimeZoneFromBasicTimeZone(*zone_->rules, status));
    icu::UnicodeString text;
    if (zone != nullptr) zone->writeSimple(toUDate(start), text, status);
    std::string result;
    text.toUTF8String(result);
    // A line of ICU's own, of use to nobody else.
    if (const std::size_t own = result.find("X-TZINFO:"); own != std::string::npos)
        result.erase(own, result.find('\n', own) + 1 - own);
    return withShortOffsets(std::move(result));
}

std::string LocalCalendar::isoText(Instant instant) const { return formatInternetDateTime(instant, offset(instant)); }

} // namespace vesk
