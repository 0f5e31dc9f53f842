#include "VeskPlatform/Linux/Vcard/CardWriting.hpp"

#include "VeskPlatform/Linux/Vcard/PhysicalLines.hpp"
#include "VeskPlatform/Linux/Vdir/ComponentEditor.hpp"
#include "VeskSupport/Iso8601.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <array>
#include <cstdio>

namespace vesk::vcard {
namespace {

using vdir::foldedLine;

/// Octets of a line, its line end aside.
constexpr std::size_t longestLine = 75;

/// A component with its escapes. What other programs wrote into theirs stays, control characters too.
std::string escapedComponent(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '\\' || c == ';' || c == ',') result += '\\';
        result += c == '\n' ? "\\n" : std::string(1, c);
    }
    return result;
}

std::string hexByte(char mark, char byte) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto value = static_cast<unsigned char>(byte);
    return {mark, digits[value >> 4], digits[value & 0xF]};
}

/// In quoted-printable text nothing stays that means something in a card or at the end of a line.
bool isPlainInQuotedPrintable(char c) { return c > ' ' && c < 0x7F && c != '=' && c != '\\' && c != ';' && c != ':'; }

std::string quotedPrintable(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '\n')
            result += "=0D=0A";
        else
            result += isPlainInQuotedPrintable(c) ? std::string(1, c) : hexByte('=', c);
    }
    return result;
}

bool isPlainAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return c >= ' ' && c < 0x7F && c != '\\'; }) && !text.starts_with(' ')
           && !text.ends_with(' ');
}

bool isUtf8BeyondAscii(std::string_view text) {
    return std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) >= 0x80; })
           && repairedUtf8(text) == text;
}

/// Value in a URI of its own scheme, where it would be read as one.
std::string escapedFromScheme(std::string_view value, std::string_view scheme) {
    if (!isSameWord(value.substr(0, scheme.size()), scheme)) return std::string(value);
    std::string result(scheme);
    for (const char c : value) result += c == '%' || c == '?' ? hexByte('%', c) : std::string(1, c);
    return result;
}

struct WrittenLabel {
    const char* label;
    std::string_view types;
};

constexpr std::array<WrittenLabel, 6> writtenLabels{{{contactLabel::iPhone, "iphone,cell"},
                                                     {contactLabel::mobile, "cell"},
                                                     {contactLabel::main, "main"},
                                                     {contactLabel::home, "home"},
                                                     {contactLabel::work, "work"},
                                                     {contactLabel::other, ""}}};

/// A label as a card tells it: by types, or in words of its own.
struct LabelParts {
    std::string_view types;
    std::string own;
};

LabelParts labelParts(const std::optional<std::string>& label) {
    const std::string text = writableText(label.value_or(""));
    if (isBlank(text)) return {};
    const auto found =
        std::ranges::find_if(writtenLabels, [&](const WrittenLabel& each) { return text == each.label; });
    return found == writtenLabels.end() ? LabelParts{{}, text} : LabelParts{found->types, {}};
}

/// A parameter's value in 4.0, where any text can be one (RFC 6868).
std::string parameterValue(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '^')
            result += "^^";
        else if (c == '\n')
            result += "^n";
        else if (c == '"')
            result += "^'";
        else
            result += c;
    }
    const bool isWord = std::ranges::all_of(
        result, [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); });
    return isWord ? result : '"' + result + '"';
}

} // namespace

std::string writableText(std::string_view text) {
    std::string result = repairedUtf8(text);
    std::erase_if(result,
                  [](char c) { return (static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t') || c == 0x7F; });
    return result;
}

bool isWritableValue(std::string_view text) { return !isBlank(writableText(text)); }

std::string revisionText(Instant now) {
    std::string text = formatUtcMilliseconds(now);
    std::erase_if(text, [](char c) { return c == '-' || c == ':'; });
    return text.substr(0, text.find('.')) + "Z";
}

CardWriter::CardWriter(CardVersion version, std::string lineEnd, std::uint64_t nextItem)
    : version_(version), lineEnd_(std::move(lineEnd)), nextItem_(nextItem) {}

std::string CardWriter::textLine(const std::string& head, std::string_view text) const {
    return componentsLine(head, {writableText(text)});
}

std::string CardWriter::escapedLine(const std::string& head, std::string_view value) const {
    return foldedLine(head + ":" + std::string(value), lineEnd_);
}

std::string CardWriter::componentsLine(const std::string& head, const std::vector<std::string>& components) const {
    std::vector<std::string> pieces = components;
    if (version_ != CardVersion::v21) {
        for (std::string& piece : pieces) piece = escapedComponent(piece);
        return escapedLine(head, joined(pieces, ";"));
    }
    if (std::ranges::all_of(pieces, isPlainAscii)) {
        for (std::string& piece : pieces) piece = joined(split(piece, ';'), "\\;");
        const std::string line = head + ":" + joined(pieces, ";");
        if (line.size() <= longestLine) return line + lineEnd_;
    }
    for (std::size_t i = 0; i < pieces.size(); ++i) pieces[i] = quotedPrintable(components[i]);
    const std::string characterSet = isUtf8BeyondAscii(joined(components, ";")) ? ";CHARSET=UTF-8" : "";
    return quotedPrintableLine(head + characterSet + ";ENCODING=QUOTED-PRINTABLE:", joined(pieces, ";"));
}

std::string CardWriter::quotedPrintableLine(const std::string& head, const std::string& encodedValue) const {
    std::string result = head;
    std::size_t used = head.size();
    for (std::size_t i = 0; i < encodedValue.size();) {
        const std::size_t length = encodedValue[i] == '=' ? 3 : 1;
        if (used + length > longestLine) {
            result += "=" + lineEnd_;
            used = 0;
        }
        result.append(encodedValue, i, length);
        used += length;
        i += length;
    }
    return result + lineEnd_;
}

std::string CardWriter::typeParameter(std::string_view types) const {
    if (types.empty()) return {};
    if (version_ != CardVersion::v21) return ";TYPE=" + std::string(types);
    return ";" + upperCased(joined(split(types, ','), ";")); // as phones of that time write it
}

std::string CardWriter::phone(const LabeledValue& phone) {
    if (!isWritableValue(phone.value)) return {};
    const LabelParts label = labelParts(phone.label);
    return grouped("TEL", typeParameter(label.types), label.own, {},
                   {escapedFromScheme(writableText(phone.value), "tel:")});
}

std::string CardWriter::email(const LabeledValue& email) {
    if (!isWritableValue(email.value)) return {};
    const LabelParts label = labelParts(email.label);
    return grouped("EMAIL", typeParameter(label.types), label.own, {},
                   {escapedFromScheme(writableText(email.value), "mailto:")});
}

std::string CardWriter::address(const LabeledPostalAddress& labeled) {
    const PostalAddress& address = labeled.address;
    std::vector<std::string> components{
        "", "", address.street, address.city, address.state, address.postalCode, address.country};
    if (std::ranges::none_of(components, isWritableValue)) return {};
    for (std::string& component : components) component = writableText(component);
    const LabelParts label = labelParts(labeled.label);
    std::string parameters = typeParameter(label.types);
    std::string code = writableText(address.isoCountryCode);
    if (version_ == CardVersion::v40 && !code.empty()) {
        parameters += ";CC=" + parameterValue(code);
        code.clear();
    }
    return grouped("ADR", parameters, label.own, code, components);
}

std::string CardWriter::grouped(const std::string& name, const std::string& parameters, const std::string& ownLabel,
                                const std::string& countryCode, const std::vector<std::string>& components) {
    if (ownLabel.empty() && countryCode.empty()) return componentsLine(name + parameters, components);
    const std::string group = "item" + std::to_string(nextItem_++) + ".";
    std::string lines = componentsLine(group + name + parameters, components);
    if (!ownLabel.empty()) lines += textLine(group + "X-ABLabel", ownLabel);
    if (!countryCode.empty()) lines += textLine(group + "X-ABADR", countryCode);
    return lines;
}

} // namespace vesk::vcard
