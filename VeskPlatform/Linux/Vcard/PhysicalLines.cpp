#include "VeskPlatform/Linux/Vcard/PhysicalLines.hpp"

#include <algorithm>

namespace vesk::vcard {
namespace {

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

/// The property that a line names, its group and parameters aside, where it can be one that marks a card.
std::string_view markerName(std::string_view beforeColon) {
    std::string_view name = beforeColon.substr(0, beforeColon.find(';'));
    name.remove_prefix(std::min(name.find('.') + 1, name.size()));
    return withoutBlanks(name);
}

bool mayBeMarker(std::string_view line) {
    if (line.empty()) return false;
    const char first = upper(line.front());
    // A group may stand before AGENT; it is the only one of them that is grouped or has parameters.
    return first == 'B' || first == 'E' || first == 'A' || line.substr(0, 64).find('.') != std::string_view::npos;
}

CardMarker agentMarker(std::string_view value) {
    if (value.empty()) return CardMarker::agent;
    return cardMarker(value) == CardMarker::begin ? CardMarker::agentBegin : CardMarker::none;
}

} // namespace

PhysicalLine PhysicalLines::take() {
    if (!lineFeedKnown_ || lineFeed_ < next_) {
        lineFeed_ = std::min(text_.find('\n', next_), text_.size());
        lineFeedKnown_ = true;
    }
    const std::size_t begin = next_;
    const std::size_t length = text_.substr(begin, lineFeed_ - begin).find('\r');
    if (length == std::string_view::npos) {
        next_ = std::min(lineFeed_ + 1, text_.size());
        return {text_.substr(begin, lineFeed_ - begin), begin, next_};
    }
    const std::size_t end = begin + length;
    const std::string_view rest = text_.substr(end, 3);
    next_ = end + (rest.starts_with("\r\n") ? 2 : rest == "\r\r\n" ? 3 : 1);
    return {text_.substr(begin, length), begin, next_};
}

PhysicalLine PhysicalLines::peek() const { return PhysicalLines(*this).take(); }

CardMarker cardMarker(std::string_view physicalLine) {
    if (!mayBeMarker(physicalLine) || physicalLine.front() == ' ' || physicalLine.front() == '\t')
        return CardMarker::none;
    // A marker's colon stands near its begin; a line of megabytes is not looked through for it.
    const std::size_t colon = physicalLine.substr(0, 512).find(':');
    if (colon == std::string_view::npos) return CardMarker::none;
    const std::string_view value = withoutBlanks(physicalLine.substr(colon + 1));
    const std::string_view name = withoutBlanks(physicalLine.substr(0, colon));
    if (isSameWord(value, "VCARD")) {
        if (isSameWord(name, "BEGIN")) return CardMarker::begin;
        if (isSameWord(name, "END")) return CardMarker::end;
    }
    return isSameWord(markerName(name), "AGENT") ? agentMarker(value) : CardMarker::none;
}

std::string upperCased(std::string_view text) {
    std::string result(text);
    for (char& c : result) c = upper(c);
    return result;
}

bool isSameWord(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, [](char x, char y) { return upper(x) == upper(y); });
}

std::string_view withoutBlanks(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
}

} // namespace vesk::vcard
