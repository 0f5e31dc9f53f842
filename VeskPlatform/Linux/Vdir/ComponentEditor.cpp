#include "VeskPlatform/Linux/Vdir/ComponentEditor.hpp"

#include "VeskPlatform/Linux/Vdir/IcsScanner.hpp"

#include <algorithm>

namespace vesk::vdir {
namespace {

/// Octets of a line, its line end aside.
constexpr std::size_t longestLine = 75;

bool isContinuationByte(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

} // namespace

ComponentEditor::ComponentEditor(std::string_view component) : lineEnd_(lineEndOf(component)) {
    int depth = 0;
    for (std::size_t begin = 0; begin < component.size();) {
        const std::string_view line = contentLineAt(component, begin);
        begin += line.size();
        std::string name = propertyName(line);
        const bool begins = name == "BEGIN", ends = name == "END";
        const bool isOwn = depth == 1 && !begins && !ends;
        depth += begins ? 1 : ends ? -1 : 0;
        // The names of its own ends stay, so that what is inserted finds its place.
        const bool isFrame = begins ? depth <= 2 : ends && depth == 0;
        lines_.push_back({std::string(line), isOwn || isFrame ? std::move(name) : std::string()});
    }
}

void ComponentEditor::set(const std::string& name, const std::string& value, const std::string& parameters) {
    Line line{foldedLine(name + parameters + ":" + value, lineEnd_), name};
    const auto present = std::ranges::find(lines_, name, &Line::name);
    if (present == lines_.end()) {
        const auto place = std::find_if(lines_.begin() + 1, lines_.end(),
                                        [](const Line& each) { return each.name == "BEGIN" || each.name == "END"; });
        lines_.insert(place, std::move(line));
        return;
    }
    *present = std::move(line);
    const auto further = std::ranges::remove(std::ranges::subrange(present + 1, lines_.end()), name, &Line::name);
    lines_.erase(further.begin(), further.end());
}

void ComponentEditor::remove(std::string_view name) {
    std::erase_if(lines_, [&](const Line& line) { return line.name == name; });
}

std::string ComponentEditor::text() const {
    std::string text;
    for (const Line& line : lines_) text += line.bytes;
    return text;
}

std::string escapedText(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '\n')
            result += "\\n";
        else if (c == '\\' || c == ';' || c == ',')
            (result += '\\') += c;
        else if (static_cast<unsigned char>(c) >= 0x20 || c == '\t')
            result += c;
    }
    return result;
}

std::string foldedLine(std::string_view line, std::string_view lineEnd) {
    std::string result;
    std::size_t room = longestLine;
    while (line.size() > room) {
        std::size_t cut = room;
        while (cut > 1 && isContinuationByte(line[cut])) --cut;
        result.append(line.substr(0, cut)).append(lineEnd).append(" ");
        line.remove_prefix(cut);
        room = longestLine - 1;
    }
    return result.append(line).append(lineEnd);
}

std::string lineEndOf(std::string_view text) {
    const std::size_t end = text.find('\n');
    const bool isBare = end != std::string_view::npos && (end == 0 || text[end - 1] != '\r');
    return isBare ? "\n" : "\r\n";
}

} // namespace vesk::vdir
