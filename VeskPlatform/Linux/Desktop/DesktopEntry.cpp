#include "VeskPlatform/Linux/Desktop/DesktopEntry.hpp"

#include "VeskPlatform/Environment.hpp"

#include <algorithm>

namespace vesk {

namespace {

constexpr std::string_view blanks = " \t\r";

std::string_view trimmedLine(std::string_view text) {
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

char escaped(char letter) {
    switch (letter) {
    case 's': return ' ';
    case 'n': return '\n';
    case 't': return '\t';
    case 'r': return '\r';
    default: return letter;
    }
}

std::string withoutEscapes(std::string_view value) {
    std::string result;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const bool isEscape = value[i] == '\\' && i + 1 < value.size();
        result.push_back(isEscape ? escaped(value[++i]) : value[i]);
    }
    return result;
}

/// `lang_COUNTRY.ENCODING@MODIFIER` in its forms with fewer parts, the longest first.
void appendForms(const std::string& locale, std::vector<std::string>& forms) {
    const auto at = locale.find('@');
    const std::string modifier = at == std::string::npos ? "" : locale.substr(at);
    std::string name = locale.substr(0, at);
    name = name.substr(0, name.find('.'));
    const std::string language = name.substr(0, name.find('_'));
    if (language.empty() || language == "C" || language == "POSIX") return;
    for (const std::string& form : {name + modifier, name, language + modifier, language})
        if (std::ranges::find(forms, form) == forms.end()) forms.push_back(form);
}

/// Words of a command line by the rules of the key Exec: blanks divide, double quotes hold together, and inside them a
/// backslash takes the next character as it is. False where a quote has no end.
bool splitCommand(std::string_view line, std::vector<std::string>& words) {
    bool isInside = false, isWord = false;
    std::string word;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '"') {
            isInside = !isInside;
            isWord = true;
        } else if (!isInside && (c == ' ' || c == '\t' || c == '\n')) {
            if (isWord) words.push_back(std::move(word));
            word.clear();
            isWord = false;
        } else {
            word.push_back(c == '\\' && isInside && i + 1 < line.size() ? line[++i] : c);
            isWord = true;
        }
    }
    if (isWord) words.push_back(std::move(word));
    return !isInside;
}

/// A word with its field codes replaced; those for files and the deprecated ones stand for nothing.
std::string withFields(const std::string& word, const std::string& name, const std::string& path) {
    std::string result;
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (word[i] != '%' || i + 1 == word.size()) {
            result.push_back(word[i]);
            continue;
        }
        switch (word[++i]) {
        case '%': result.push_back('%'); break;
        case 'c': result += name; break;
        case 'k': result += path; break;
        default: break;
        }
    }
    return result;
}

} // namespace

DesktopEntry::DesktopEntry(std::string_view file) {
    bool isMainGroup = false;
    while (!file.empty()) {
        const auto end = std::min(file.find('\n'), file.size());
        const std::string_view line = trimmedLine(file.substr(0, end));
        file.remove_prefix(std::min(end + 1, file.size()));
        if (line.empty() || line.front() == '#') continue;
        if (line.front() == '[') {
            if (isMainGroup) return; // it stands once
            isMainGroup = line == "[Desktop Entry]";
            continue;
        }
        const auto equals = line.find('=');
        if (!isMainGroup || equals == std::string_view::npos) continue;
        values_.emplace(trimmedLine(line.substr(0, equals)), trimmedLine(line.substr(equals + 1)));
    }
}

std::optional<std::string> DesktopEntry::text(const std::string& key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(withoutEscapes(found->second));
}

std::optional<std::string> DesktopEntry::localizedText(const std::string& key,
                                                       const std::vector<std::string>& locales) const {
    for (const std::string& locale : locales)
        if (auto value = text(key + "[" + locale + "]")) return value;
    return text(key);
}

bool DesktopEntry::isTrue(const std::string& key) const { return text(key) == "true"; }

std::vector<std::string> messageLocales(Environment& environment) {
    std::string locale;
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        locale = environment.value(variable).value_or("");
        if (!locale.empty()) break;
    }
    std::vector<std::string> own, forms;
    appendForms(locale, own);
    if (own.empty()) return {}; // the C locale has no list of languages either
    std::string_view languages;
    const std::string listed = environment.value("LANGUAGE").value_or("");
    for (languages = listed; !languages.empty();) {
        const auto end = std::min(languages.find(':'), languages.size());
        appendForms(std::string(languages.substr(0, end)), forms);
        languages.remove_prefix(std::min(end + 1, languages.size()));
    }
    for (const std::string& form : own)
        if (std::ranges::find(forms, form) == forms.end()) forms.push_back(form);
    return forms;
}

std::vector<std::string> startCommand(const DesktopEntry& entry, const std::string& path,
                                      const std::vector<std::string>& locales) {
    std::vector<std::string> words, command;
    if (!splitCommand(entry.text("Exec").value_or(""), words)) return {};
    const std::string name = entry.localizedText("Name", locales).value_or(""),
                      icon = entry.localizedText("Icon", locales).value_or("");
    for (const std::string& word : words) {
        if (word == "%i") {
            if (!icon.empty()) command.insert(command.end(), {"--icon", icon});
            continue;
        }
        std::string whole = withFields(word, name, path);
        if (!whole.empty() || word.empty()) command.push_back(std::move(whole));
    }
    return command;
}

} // namespace vesk
