#include "VeskPlatform/Linux/Vcard/CardLines.hpp"

#include "VeskPlatform/Linux/Vcard/PhysicalLines.hpp"

#include <algorithm>

namespace vesk::vcard {
namespace {

/// The colon that ends name and parameters: the first outside quotation marks, else (a mark is missing) the first.
std::size_t headerEnd(std::string_view line) {
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"')
            quoted = !quoted;
        else if (line[i] == ':' && !quoted)
            return i;
    }
    return line.find(':');
}

/// RFC 6868: the characters that a parameter's value cannot hold.
std::string withoutCarets(std::string_view value) {
    std::string result;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char next = i + 1 < value.size() ? value[i + 1] : '\0';
        const bool isEscape = value[i] == '^' && (next == '^' || next == 'n' || next == '\'');
        result += !isEscape ? value[i] : next == 'n' ? '\n' : next == '\'' ? '"' : '^';
        if (isEscape) ++i;
    }
    return result;
}

bool isEncoding(std::string_view word) {
    return std::ranges::any_of(std::initializer_list<std::string_view>{"QUOTED-PRINTABLE", "BASE64", "8BIT", "7BIT"},
                               [&](std::string_view each) { return isSameWord(word, each); });
}

CardParameter parameterOf(std::string_view bytes, CardVersion version) {
    const std::size_t equals = bytes.find('=');
    if (equals == std::string_view::npos) {
        const std::string_view word = withoutBlanks(bytes);
        return {isEncoding(word) ? "ENCODING" : "TYPE", std::string(word), std::string(bytes)};
    }
    std::string value(withoutBlanks(bytes.substr(equals + 1)));
    std::erase(value, '"');
    if (version == CardVersion::v40) value = withoutCarets(value);
    return {upperCased(withoutBlanks(bytes.substr(0, equals))), std::move(value), std::string(bytes)};
}

std::vector<CardParameter> parametersOf(std::string_view text, CardVersion version) {
    std::vector<CardParameter> parameters;
    bool quoted = false;
    std::size_t begin = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && text[i] == '"') quoted = !quoted;
        if (i < text.size() && (text[i] != ';' || quoted)) continue;
        parameters.push_back(parameterOf(text.substr(begin, i - begin), version));
        begin = i + 1;
    }
    return parameters;
}

/// Whether a line, folded or not, says in its parameters that its value is quoted-printable.
bool isQuotedPrintableLine(std::string_view line) {
    std::string header(line.substr(0, headerEnd(line)));
    std::erase_if(header, [](char c) { return c == '\r' || c == '\n'; });
    const std::size_t nameEnd = header.find(';');
    if (nameEnd == std::string::npos) return false;
    return CardProperty{{}, parametersOf(std::string_view(header).substr(nameEnd + 1), CardVersion::v30), {}}
        .isQuotedPrintable();
}

/// No property has parameters as long as this.
constexpr std::size_t longestHeader = 4096;

/// Whether the line that has come so far is quoted-printable; none while its parameters may still go on.
std::optional<bool> isQuotedPrintableSoFar(std::string_view line) {
    if (line.substr(0, longestHeader).find(':') != std::string_view::npos) return isQuotedPrintableLine(line);
    return line.size() > longestHeader ? std::optional(false) : std::nullopt;
}

/// Passes over the lines that continue `line`, which becomes the last of them. True where the
/// last one ends in a soft line break.
bool takeContinuations(std::string_view card, PhysicalLines& physical, PhysicalLine& line) {
    const std::size_t begin = line.begin;
    std::optional<bool> isQuotedPrintable;
    while (true) {
        const bool mayBeSoft = line.text.ends_with('=');
        if (mayBeSoft && !isQuotedPrintable)
            isQuotedPrintable = isQuotedPrintableSoFar(card.substr(begin, line.next - begin));
        const bool isSoft = mayBeSoft && isQuotedPrintable.value_or(false);
        if (physical.atEnd()) return isSoft;
        const bool mayContinue = isSoft && cardMarker(physical.peek().text) == CardMarker::none;
        if (!mayContinue && !physical.continues()) return isSoft;
        line = physical.take();
    }
}

/// The bytes of a logical line with its line breaks taken out, also the soft one that nothing follows. In 2.1 the blank
/// behind a fold is part of the text.
std::string unfolded(std::string_view bytes, CardVersion version) {
    PhysicalLines physical(bytes);
    std::string_view text = physical.take().text;
    std::string result(text);
    if (physical.atEnd() && !text.ends_with('=')) return result;
    const bool isQuotedPrintable = isQuotedPrintableLine(bytes);
    bool isValue = text.find(':') != std::string_view::npos;
    while (true) {
        const bool isSoft = isQuotedPrintable && isValue && text.ends_with('=');
        if (isSoft) result.pop_back();
        if (physical.atEnd()) return result;
        text = physical.take().text;
        if (!isSoft && version != CardVersion::v21 && !text.empty()) text.remove_prefix(1);
        isValue = isValue || text.find(':') != std::string_view::npos;
        result += text;
    }
}

/// What stands before the first ';' or ':' of a logical line.
std::string nameWithGroup(std::string_view bytes) {
    const std::string_view firstLine = PhysicalLines(bytes).take().text;
    std::size_t length = firstLine.find_first_of(";:");
    if (length != std::string_view::npos) return std::string(withoutBlanks(firstLine.substr(0, length)));
    if (firstLine.size() > 512) return {};
    const std::string line = unfolded(bytes.substr(0, 2048), CardVersion::v30);
    length = line.find_first_of(";:");
    return length == std::string::npos ? std::string() : std::string(withoutBlanks(line.substr(0, length)));
}

} // namespace

std::optional<std::string_view> CardProperty::parameter(std::string_view name) const {
    const auto found = std::ranges::find(parameters, name, &CardParameter::name);
    return found == parameters.end() ? std::nullopt : std::optional<std::string_view>(found->value);
}

bool CardProperty::isQuotedPrintable() const {
    return isSameWord(parameter("ENCODING").value_or(""), "QUOTED-PRINTABLE");
}

bool CardProperty::isBase64() const {
    const std::string_view encoding = parameter("ENCODING").value_or("");
    return isSameWord(encoding, "BASE64") || isSameWord(encoding, "B");
}

std::string_view CardProperty::characterSet() const { return parameter("CHARSET").value_or(""); }

CardLines::CardLines(std::string_view card) : card_(card) {
    scan();
    readVersion();
}

void CardLines::scan() {
    PhysicalLines physical(card_);
    std::size_t depth = 0;
    while (!physical.atEnd()) {
        PhysicalLine line = physical.take();
        const std::size_t begin = line.begin;
        const CardMarker marker = cardMarker(line.text);
        if (marker == CardMarker::end) {
            if (depth == 1) end_ = begin;
            if (depth <= 1) return;
            --depth;
            isOpenAtEnd_ = false;
            continue;
        }
        const bool isOpen = takeContinuations(card_, physical, line);
        if (marker == CardMarker::begin || (marker == CardMarker::agentBegin && depth > 0)) ++depth;
        isOpenAtEnd_ = isOpen;
        if (depth != 1 || marker == CardMarker::begin) continue;
        const CardRange range{begin, line.next};
        std::string name = nameWithGroup(range.of(card_));
        if (name.empty()) continue;
        const std::size_t dot = name.find('.');
        if (dot == std::string::npos)
            lines_.push_back({{}, upperCased(name), range, isOpen});
        else
            lines_.push_back({name.substr(0, dot), upperCased(name.substr(dot + 1)), range, isOpen});
    }
}

void CardLines::readVersion() {
    const CardLine* line = first("VERSION");
    if (!line) return;
    const std::string value = property(*line).value;
    const std::string_view number = withoutBlanks(value);
    if (number == "2.1") version_ = CardVersion::v21;
    if (number == "4.0") version_ = CardVersion::v40;
}

const CardLine* CardLines::first(std::string_view name) const {
    const auto found = std::ranges::find(lines_, name, &CardLine::name);
    return found == lines_.end() ? nullptr : &*found;
}

CardProperty CardLines::property(const CardLine& line) const {
    const std::string text = unfolded(line.range.of(card_), version_);
    const std::size_t colon = std::min(headerEnd(text), text.size());
    const std::string_view header = std::string_view(text).substr(0, colon);
    const std::size_t nameEnd = std::min(header.find(';'), header.size());
    CardProperty property{std::string(withoutBlanks(header.substr(0, nameEnd))), {}, {}};
    if (nameEnd < header.size()) property.parameters = parametersOf(header.substr(nameEnd + 1), version_);
    if (colon < text.size()) property.value = text.substr(colon + 1);
    return property;
}

} // namespace vesk::vcard
