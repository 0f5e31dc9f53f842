#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::vdir {

/// A span of bytes of the scanned text.
struct TextRange {
    std::size_t begin = 0, end = 0;

    std::string_view of(std::string_view text) const { return text.substr(begin, end - begin); }
};

/// Days since 1970-01-01 on the wall of the component itself, both ends included. A wall differs from UTC by less than
/// 16 hours (local mean times of the nineteenth century included).
struct DaySpan {
    static constexpr std::int32_t unbounded = INT32_MAX;
    std::int32_t first = 0, last = 0;

    bool overlaps(DaySpan other) const { return first <= other.last && other.first <= last; }
};

/// A whole VEVENT and what can be told about it without parsing it.
struct ScannedEvent {
    TextRange range;
    /// As the parser reads it; empty where there is none.
    std::string uid;
    /// The days from start to end; without a readable DTSTART, every day.
    DaySpan span;
    /// RRULE, RDATE or EXRULE.
    bool recurs = false;
    bool isOverride = false;
};

/// A whole VTODO.
struct ScannedTodo {
    TextRange range;
    /// Empty where there is none.
    std::string uid;
    bool isOverride = false;
};

/// A whole VTIMEZONE.
struct ScannedZone {
    std::string tzid;
    TextRange range;
};

/// One event with its overrides: the VEVENTs of one UID, in file order. A VEVENT without UID stands for itself.
struct ScannedItem {
    std::vector<std::size_t> events;
    DaySpan span;
    bool recurs = false;
};

struct ScannedFile {
    std::vector<ScannedEvent> events;
    std::vector<ScannedTodo> todos;
    std::vector<ScannedZone> zones;
    std::vector<ScannedItem> items;
    /// No calendar at all, a component that is cut off, or components that do not nest.
    bool damaged = false;
};

/// Finds the components of iCalendar text (RFC 5545, section 3.4 and 3.6) in one pass, without parsing their
/// properties: about a gigabyte a second, so that a store can be indexed by looking at every file. Whole components of
/// a damaged file are still found. Never throws but for want of memory.
ScannedFile scanCalendarText(std::string_view text);

/// The text at `begin` up to the next content line: one line with its continuation lines (RFC 5545, section 3.1) and
/// its line end, as it stands.
std::string_view contentLineAt(std::string_view text, std::size_t begin);

/// The name of a property in upper case: what stands before the first ';' or ':' of the unfolded line.
std::string propertyName(std::string_view contentLine);

/// The value of a content line as it stands, unfolded, blanks at its ends aside.
std::string propertyValue(std::string_view contentLine);

/// The unfolded values of the property `name` (in upper case) as they stand in the text of one whole component, those
/// of the components within it left out.
std::vector<std::string> propertyValues(std::string_view component, std::string_view name);

} // namespace vesk::vdir
