#include "VeskPlatform/Linux/Vdir/IcsScanner.hpp"

#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <chrono>
#include <optional>
#include <unordered_map>

namespace vesk::vdir {
namespace {

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

/// Whether `text` begins with `word`, case aside; `word` is in upper case.
bool beginsWith(std::string_view text, std::string_view word) {
    return text.size() >= word.size()
           && std::equal(word.begin(), word.end(), text.begin(), [](char w, char c) { return w == upper(c); });
}

bool equals(std::string_view text, std::string_view word) {
    return text.size() == word.size() && beginsWith(text, word);
}

/// The part behind the first colon outside quotation marks.
std::string_view valueOf(std::string_view line) {
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"')
            quoted = !quoted;
        else if (line[i] == ':' && !quoted)
            return line.substr(i + 1);
    }
    return {};
}

/// The day of a value that begins with the eight digits of a date.
std::optional<std::int32_t> dayOf(std::string_view value) {
    using namespace std::chrono;
    if (value.size() < 8 || !std::all_of(value.begin(), value.begin() + 8, [](char c) { return c >= '0' && c <= '9'; }))
        return std::nullopt;
    const auto number = [&](std::size_t at, std::size_t count) {
        int n = 0;
        for (std::size_t i = at; i < at + count; ++i) n = n * 10 + (value[i] - '0');
        return n;
    };
    const year_month_day date{year{number(0, 4)}, month{static_cast<unsigned>(number(4, 2))},
                              day{static_cast<unsigned>(number(6, 2))}};
    if (!date.ok()) return std::nullopt;
    return static_cast<std::int32_t>(local_days{date}.time_since_epoch().count());
}

/// The whole days that a DURATION (RFC 5545, section 3.3.6) takes at most.
std::int32_t daysOfDuration(std::string_view value) {
    double total = 0, number = 0;
    for (const char c : value) {
        if (c >= '0' && c <= '9') {
            number = number * 10 + (c - '0');
            continue;
        }
        switch (upper(c)) {
        case 'W': total += number * 7; break;
        case 'D': total += number; break;
        case 'H': total += number / 24; break;
        case 'M': total += number / 1440; break;
        case 'S': total += number / 86400; break;
        default: break;
        }
        number = 0;
    }
    return total < 4e6 ? static_cast<std::int32_t>(total) + 1 : DaySpan::unbounded;
}

/// "BEGIN:VTIMEZONE" and blanks; only lines as short as this can be folded within what tells their kind.
constexpr std::size_t longestName = 20;

/// The physical line at `at`, without its line end; `at` moves behind it.
std::string_view physicalLine(std::string_view text, std::size_t& at) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    std::string_view line = text.substr(at, end - at);
    at = std::min(end + 1, text.size());
    while (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

bool continuesAt(std::string_view text, std::size_t at) {
    return at < text.size() && (text[at] == ' ' || text[at] == '\t');
}

/// `line` with the continuation lines (RFC 5545, section 3.1) that follow it at `next`.
std::string unfolded(std::string_view text, std::string_view line, std::size_t next) {
    std::string whole(line);
    while (continuesAt(text, next)) whole += physicalLine(text, next).substr(1);
    return whole;
}

/// The line at `next`, which moves behind it; with its continuation lines, kept in `storage`, where it is so short that
/// the fold may lie within its name.
std::string_view nextLine(std::string_view text, std::size_t& next, std::string& storage) {
    const std::string_view line = physicalLine(text, next);
    if (line.empty() || line.size() > longestName || !continuesAt(text, next)) return line;
    storage = unfolded(text, line, next);
    while (continuesAt(text, next)) physicalLine(text, next);
    return storage;
}

std::string_view withoutTrailingBlanks(std::string_view name) {
    while (name.ends_with(' ') || name.ends_with('\t')) name.remove_suffix(1);
    return name;
}

bool isProperty(std::string_view line, std::string_view name) {
    return beginsWith(line, name) && line.size() > name.size()
           && (line[name.size()] == ':' || line[name.size()] == ';');
}

/// A TEXT value (RFC 5545, section 3.3.11) as it is meant.
std::string unescaped(std::string_view value) {
    std::string result;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            result += value[i];
            continue;
        }
        const char c = value[++i];
        result += c == 'n' || c == 'N' ? '\n' : c;
    }
    return result;
}

/// What the lines of one VEVENT have told so far.
struct OpenEvent {
    ScannedEvent event;
    std::optional<std::int32_t> start, end, duration;
    /// Components that do not nest within it; a parser would end it at the wrong line.
    bool broken = false;

    void finish() {
        if (!start) {
            event.span = {INT32_MIN, DaySpan::unbounded};
            return;
        }
        std::int32_t last = end.value_or(*start);
        if (duration) last = *duration == DaySpan::unbounded ? DaySpan::unbounded : std::max(last, *start + *duration);
        event.span = {*start, std::max(*start, last)};
    }
};

/// Real files nest three deep; more than this is no calendar.
constexpr std::size_t maximumDepth = 64;

class Scanner {
public:
    explicit Scanner(std::string_view text) : text_(text) {}

    ScannedFile run() {
        if (text_.starts_with("\xEF\xBB\xBF")) next_ = 3;
        while (next_ < text_.size()) readLine();
        if (!open_.empty() || !sawCalendar_) result_.damaged = true;
        groupIntoItems();
        return std::move(result_);
    }

private:
    struct OpenComponent {
        std::string name;
        std::size_t begin;
    };

    void readLine() {
        const std::size_t begin = next_;
        std::string storage;
        const std::string_view line = nextLine(text_, next_, storage);
        if (line.empty()) return;
        switch (upper(line.front())) {
        case 'B':
            if (isProperty(line, "BEGIN")) return openComponent(valueOf(line), begin);
            return;
        case 'E':
            if (isProperty(line, "END")) return closeComponent(valueOf(line));
            break;
        case 'D':
        case 'R':
        case 'T':
        case 'U': break;
        default: return;
        }
        if (open_.empty()) return;
        if (open_.back().name == "VEVENT")
            readEventProperty(line);
        else if (open_.back().name == "VTODO")
            readTodoProperty(line);
        else if (open_.back().name == "VTIMEZONE")
            readZoneProperty(line);
    }

    void openComponent(std::string_view name, std::size_t begin) {
        name = withoutTrailingBlanks(name);
        if (open_.size() == maximumDepth) {
            result_.damaged = event_.broken = todoBroken_ = true;
            return;
        }
        OpenComponent component{std::string(name), begin};
        for (char& c : component.name) c = upper(c);
        if (component.name == "VCALENDAR") sawCalendar_ = true;
        if (component.name == "VEVENT") beginEvent();
        if (component.name == "VTODO") beginTodo();
        if (component.name == "VTIMEZONE") tzid_.clear();
        open_.push_back(std::move(component));
    }

    void beginEvent() {
        dropOuter("VEVENT");
        event_ = {};
    }

    void beginTodo() {
        dropOuter("VTODO");
        todo_ = {};
        todoBroken_ = false;
    }

    /// An event within an event: the outer one was cut off.
    void dropOuter(std::string_view name) {
        const auto outer = std::find_if(open_.begin(), open_.end(), [&](const auto& c) { return c.name == name; });
        if (outer != open_.end()) result_.damaged = true;
        open_.erase(outer, open_.end());
    }

    void closeComponent(std::string_view name) {
        name = withoutTrailingBlanks(name);
        // An END closes the nearest component of its name; what lies between was cut off.
        const auto found =
            std::find_if(open_.rbegin(), open_.rend(), [&](const auto& c) { return equals(name, c.name); });
        if (found == open_.rend()) {
            result_.damaged = event_.broken = todoBroken_ = true;
            return;
        }
        const bool whole = found == open_.rbegin();
        if (!whole) result_.damaged = event_.broken = todoBroken_ = true;
        const OpenComponent component = *found;
        open_.erase(std::prev(found.base()), open_.end());
        const TextRange range{component.begin, next_};
        if (component.name == "VEVENT") {
            if (event_.broken) return;
            event_.event.range = range;
            event_.finish();
            result_.events.push_back(std::move(event_.event));
        } else if (component.name == "VTODO") {
            if (todoBroken_) return;
            todo_.range = range;
            result_.todos.push_back(std::move(todo_));
        } else if (component.name == "VTIMEZONE" && whole) {
            result_.zones.push_back({std::move(tzid_), range});
        }
    }

    void readEventProperty(std::string_view line) {
        if (isProperty(line, "DTSTART"))
            event_.start = dayOf(valueOf(unfolded(text_, line, next_)));
        else if (isProperty(line, "DTEND"))
            event_.end = dayOf(valueOf(unfolded(text_, line, next_)));
        else if (isProperty(line, "DURATION"))
            event_.duration = daysOfDuration(valueOf(unfolded(text_, line, next_)));
        else if (isProperty(line, "UID") && event_.event.uid.empty()) // of several the parser reads the first
            event_.event.uid = textOf(line);
        else if (isProperty(line, "RECURRENCE-ID"))
            event_.event.isOverride = true;
        else if (isProperty(line, "RRULE") || isProperty(line, "RDATE") || isProperty(line, "EXRULE"))
            event_.event.recurs = true;
    }

    void readTodoProperty(std::string_view line) {
        if (isProperty(line, "UID") && todo_.uid.empty())
            todo_.uid = textOf(line);
        else if (isProperty(line, "RECURRENCE-ID"))
            todo_.isOverride = true;
    }

    void readZoneProperty(std::string_view line) {
        if (isProperty(line, "TZID")) tzid_ = textOf(line);
    }

    std::string textOf(std::string_view line) const {
        return repairedUtf8(trimmed(unescaped(valueOf(unfolded(text_, line, next_)))));
    }

    void groupIntoItems() {
        std::unordered_map<std::string_view, std::size_t> itemOfUid;
        for (std::size_t i = 0; i < result_.events.size(); ++i) {
            const ScannedEvent& event = result_.events[i];
            std::size_t item = result_.items.size();
            if (!event.uid.empty()) item = itemOfUid.try_emplace(event.uid, item).first->second;
            if (item == result_.items.size()) result_.items.push_back({{}, event.span, false});
            ScannedItem& target = result_.items[item];
            target.events.push_back(i);
            target.span.first = std::min(target.span.first, event.span.first);
            target.span.last = std::max(target.span.last, event.span.last);
            target.recurs = target.recurs || event.recurs;
        }
    }

    std::string_view text_;
    std::size_t next_ = 0;
    bool sawCalendar_ = false;
    std::vector<OpenComponent> open_;
    OpenEvent event_;
    ScannedTodo todo_;
    bool todoBroken_ = false;
    std::string tzid_;
    ScannedFile result_;
};

} // namespace

ScannedFile scanCalendarText(std::string_view text) { return Scanner(text).run(); }

std::string_view contentLineAt(std::string_view text, std::size_t begin) {
    std::size_t end = begin;
    do physicalLine(text, end);
    while (continuesAt(text, end));
    return text.substr(begin, end - begin);
}

std::string propertyName(std::string_view contentLine) {
    std::size_t next = 0;
    const std::string_view first = physicalLine(contentLine, next);
    std::string name =
        first.find_first_of(";:") == std::string_view::npos ? unfolded(contentLine, first, next) : std::string(first);
    name.resize(std::min(name.find_first_of(";:"), name.size()));
    for (char& c : name) c = upper(c);
    return name;
}

std::string propertyValue(std::string_view contentLine) {
    std::size_t next = 0;
    const std::string_view first = physicalLine(contentLine, next);
    return std::string(trimmed(valueOf(unfolded(contentLine, first, next))));
}

std::vector<std::string> propertyValues(std::string_view component, std::string_view name) {
    std::vector<std::string> values;
    int depth = 0;
    for (std::size_t next = 0; next < component.size();) {
        std::string storage;
        const std::string_view line = nextLine(component, next, storage);
        if (isProperty(line, "BEGIN"))
            ++depth;
        else if (isProperty(line, "END"))
            --depth;
        else if (depth == 1 && isProperty(line, name))
            values.emplace_back(trimmed(valueOf(unfolded(component, line, next))));
    }
    return values;
}

} // namespace vesk::vdir
