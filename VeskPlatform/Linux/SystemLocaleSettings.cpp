#include "VeskPlatform/Linux/SystemLocaleSettings.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/Linux/PosixFileReader.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/LocalCalendar.hpp"
#include "VeskSupport/PosixZone.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <filesystem>

namespace vesk {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t largestZoneFile = 1 << 20;

std::optional<std::string> contentsOf(const std::string& path) {
    try {
        return PosixFileReader().contents(path, largestZoneFile);
    } catch (const PosixError&) {
        return std::nullopt; // a zone that cannot be read is one that the system does not tell
    }
}

/// The zone that a path into some zone database names: what follows "zoneinfo/".
std::optional<std::string> zoneInPath(std::string_view path) {
    constexpr std::string_view database = "/zoneinfo/";
    const auto at = path.rfind(database);
    if (at == std::string_view::npos) return std::nullopt;
    std::string_view name = path.substr(at + database.size());
    for (const std::string_view variant : {"posix/", "right/"})
        if (name.starts_with(variant)) name.remove_prefix(variant.size());
    return LocalCalendar::isKnownZone(std::string(name)) ? std::optional<std::string>(name) : std::nullopt;
}

bool isAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isAsciiWord(char c) { return isAsciiLetter(c) || (c >= '0' && c <= '9'); }

bool isWord(std::string_view text, std::size_t shortest, std::size_t longest) {
    return text.size() >= shortest && text.size() <= longest && std::all_of(text.begin(), text.end(), isAsciiWord);
}

std::string_view scriptOfModifier(std::string_view modifier) {
    if (modifier == "latin") return "Latn";
    if (modifier == "cyrillic") return "Cyrl";
    if (modifier == "devanagari") return "Deva";
    return {};
}

} // namespace

std::string icuLocale(std::string_view posixName) {
    static constexpr std::string_view root = "en_US_POSIX";
    const auto at = posixName.find('@');
    const std::string_view modifier = at == std::string_view::npos ? "" : posixName.substr(at + 1);
    std::string_view name = posixName.substr(0, at);
    name = name.substr(0, name.find('.'));
    const auto underscore = name.find('_');
    const std::string_view language = name.substr(0, underscore);
    const std::string_view region = underscore == std::string_view::npos ? "" : name.substr(underscore + 1);
    if (name == "POSIX" || !isWord(language, 2, 3) || !std::all_of(language.begin(), language.end(), isAsciiLetter))
        return std::string(root);
    if (underscore != std::string_view::npos && !isWord(region, 2, 3)) return std::string(root);
    std::string result(language);
    if (const auto script = scriptOfModifier(modifier); !script.empty()) result.append("_").append(script);
    if (!region.empty()) result.append("_").append(region);
    return result;
}

SystemLocaleSettings::SystemLocaleSettings(Environment& environment, TimeZonePlaces places)
    : environment_(environment), places_(std::move(places)) {}

std::string SystemLocaleSettings::locale() {
    for (const char* name : {"LC_ALL", "LC_COLLATE", "LANG"}) {
        const auto value = environment_.value(name);
        if (value && !value->empty()) return icuLocale(*value);
    }
    return icuLocale("C");
}

std::string SystemLocaleSettings::timeZone() {
    // TZ decides alone where it is set: one that means nothing is UTC for the C library, too.
    if (const auto variable = environment_.value("TZ")) return zoneFromVariable(*variable).value_or("UTC");
    if (auto zone = zoneFromLink(places_.localtime)) return *zone;
    if (auto zone = zoneFromText(places_.timezone)) return *zone;
    return zoneFromContents(places_.localtime).value_or("UTC");
}

std::optional<std::string> SystemLocaleSettings::zoneFromVariable(std::string_view text) const {
    if (text.starts_with(':')) text.remove_prefix(1);
    if (text.starts_with('/')) return zoneFromFile(std::string(text));
    std::string name(text);
    if (auto zone = zoneInPath("/zoneinfo/" + name)) return zone;
    // A name before a rule: "EST5EDT" is both, and the database's history is the better one.
    return zoneForPosixText(name);
}

std::optional<std::string> SystemLocaleSettings::zoneFromFile(const std::string& path) const {
    if (auto zone = zoneInPath(path)) return zone;
    if (auto zone = zoneFromLink(path)) return zone;
    return zoneFromContents(path);
}

/// Follows links one by one, so that the name the user chose counts and not the zone that it is an alias of.
std::optional<std::string> SystemLocaleSettings::zoneFromLink(std::string path) const {
    constexpr int mostLinks = 40; // the kernel's own limit
    for (int i = 0; i < mostLinks; ++i) {
        std::error_code error;
        const fs::path target = fs::read_symlink(path, error);
        if (error) return std::nullopt;
        path = (fs::path(path).parent_path() / target).lexically_normal().string();
        if (auto zone = zoneInPath(path)) return zone;
    }
    return std::nullopt;
}

std::optional<std::string> SystemLocaleSettings::zoneFromText(const std::string& path) const {
    const auto text = contentsOf(path);
    if (!text) return std::nullopt;
    const std::string name(trimmed(*text));
    return LocalCalendar::isKnownZone(name) ? std::optional(name) : std::nullopt;
}

/// The first zone of the database, in the order of names, whose file has the same bytes: reads only files of that size.
std::optional<std::string> SystemLocaleSettings::zoneFromContents(const std::string& path) const {
    const auto wanted = contentsOf(path);
    if (!wanted) return std::nullopt;
    std::optional<std::string> best;
    std::error_code error;
    const auto options = fs::directory_options::skip_permission_denied;
    for (fs::recursive_directory_iterator it(places_.database, options, error), end; !error && it != end;
         it.increment(error)) {
        std::error_code unreadable;
        if (!it->is_regular_file(unreadable) || it->file_size(unreadable) != wanted->size()) continue;
        const auto zone = zoneInPath("/zoneinfo/" + it->path().lexically_relative(places_.database).string());
        if (zone && (!best || *zone < *best) && contentsOf(it->path().string()) == wanted) best = zone;
    }
    return best;
}

} // namespace vesk
