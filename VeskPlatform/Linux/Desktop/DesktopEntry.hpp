#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesk {

class Environment;

/// The main group of a desktop file (freedesktop.org desktop entries 1.5): what a program is called and how it starts.
class DesktopEntry {
public:
    /// Never fails: a line that is none counts for nothing, and a file without the group has no keys.
    explicit DesktopEntry(std::string_view file);

    /// The value with its escapes undone; none where the key is not there.
    std::optional<std::string> text(const std::string& key) const;
    /// The value for the first of the locales that has one, else the one for all.
    std::optional<std::string> localizedText(const std::string& key, const std::vector<std::string>& locales) const;
    bool isTrue(const std::string& key) const;

private:
    std::map<std::string, std::string, std::less<>> values_;
};

/// The locales of the user's messages as the keys of desktop files name them, the best first: for "de_DE.UTF-8" these
/// are "de_DE" and "de". Empty for the C locale.
std::vector<std::string> messageLocales(Environment& environment);

/// What starts the program of an entry that lies at `path`, without files to open; empty where the entry names no
/// command or a malformed one.
std::vector<std::string> startCommand(const DesktopEntry& entry, const std::string& path,
                                      const std::vector<std::string>& locales);

} // namespace vesk
