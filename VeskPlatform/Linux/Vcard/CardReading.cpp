#include "VeskPlatform/Linux/Vcard/CardReading.hpp"

#include "VeskPlatform/Linux/Vcard/CardValues.hpp"
#include "VeskPlatform/Linux/Vcard/PhysicalLines.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace vesk::vcard {
namespace {

constexpr std::array<std::pair<std::string_view, const char*>, 5> typeLabels{{{"IPHONE", contactLabel::iPhone},
                                                                              {"CELL", contactLabel::mobile},
                                                                              {"MAIN", contactLabel::main},
                                                                              {"HOME", contactLabel::home},
                                                                              {"WORK", contactLabel::work}}};

bool hasType(const CardProperty& property, std::string_view type) {
    return std::ranges::any_of(property.parameters, [&](const CardParameter& parameter) {
        if (parameter.name != "TYPE") return false;
        const std::vector<std::string> types = split(parameter.value, ',');
        return std::ranges::any_of(types, [&](const std::string& each) { return isSameWord(trimmed(each), type); });
    });
}

/// `text` behind the scheme of a URI, percent-decoded; none where it has another scheme or none.
std::optional<std::string> behindScheme(std::string_view text, std::string_view scheme) {
    if (!isSameWord(text.substr(0, scheme.size()), scheme)) return std::nullopt;
    return repairedUtf8(percentDecoded(text.substr(scheme.size())));
}

std::string componentAt(const std::vector<std::string>& components, std::size_t index) {
    return index < components.size() ? components[index] : std::string();
}

/// What a property of the same group tells, by the group's name in upper case.
using TextsOfGroups = std::unordered_map<std::string, std::string>;

class Reader {
public:
    explicit Reader(const CardLines& lines) : lines_(lines) {}

    ReadCard run() {
        for (const CardLine& line : lines_.lines()) readGroupLine(line);
        for (const CardLine& line : lines_.lines()) readLine(line);
        readName();
        return std::move(result_);
    }

private:
    std::string text(const CardLine& line) const { return valueText(lines_.property(line), lines_.version()); }

    void readGroupLine(const CardLine& line) {
        if (line.group.empty()) return;
        if (line.name == "X-ABLABEL") labels_.try_emplace(upperCased(line.group), text(line));
        if (line.name == "X-ABADR") countryCodes_.try_emplace(upperCased(line.group), text(line));
    }

    void readLine(const CardLine& line) {
        if (line.name == "TEL") return readPhone(line);
        if (line.name == "EMAIL") return readEmail(line);
        if (line.name == "ADR") return readAddress(line);
        if (line.name == "KIND" || line.name == "X-ADDRESSBOOKSERVER-KIND")
            result_.isGroup = result_.isGroup || isSameWord(trimmed(text(line)), "group");
        if (line.name == "UID" && !result_.uid) result_.uid = trimmedOrAbsent(text(line));
    }

    std::string labelOf(const CardLine& line, const CardProperty& property) const {
        if (const auto own = labels_.find(upperCased(line.group)); own != labels_.end() && !isBlank(own->second))
            return own->second;
        for (const auto& [type, label] : typeLabels)
            if (hasType(property, type)) return label;
        return contactLabel::other;
    }

    void readPhone(const CardLine& line) {
        const CardProperty property = lines_.property(line);
        std::string value = valueText(property, lines_.version());
        if (std::optional<std::string> number = behindScheme(value, "tel:")) value = std::move(*number);
        if (!isBlank(value)) result_.contact.phoneNumbers.push_back({labelOf(line, property), std::move(value)});
    }

    void readEmail(const CardLine& line) {
        const CardProperty property = lines_.property(line);
        std::string value = valueText(property, lines_.version());
        // What stands behind '?' are header fields (RFC 6068).
        const std::string_view address = std::string_view(value).substr(0, value.find('?'));
        if (std::optional<std::string> mailbox = behindScheme(address, "mailto:")) value = std::move(*mailbox);
        if (!isBlank(value)) result_.contact.emailAddresses.push_back({labelOf(line, property), std::move(value)});
    }

    void readAddress(const CardLine& line) {
        const CardProperty property = lines_.property(line);
        const std::vector<std::string> components = componentTexts(property, lines_.version());
        if (std::ranges::all_of(components, [](const std::string& each) { return isBlank(each); })) return;
        PostalAddress address{streetOf(components),       componentAt(components, 3), componentAt(components, 4),
                              componentAt(components, 5), componentAt(components, 6), countryCodeOf(line, property)};
        result_.contact.postalAddresses.push_back({labelOf(line, property), std::move(address)});
    }

    /// The street, then what stands beside it: the extended address and the post office box, a line each.
    static std::string streetOf(const std::vector<std::string>& components) {
        std::string street = componentAt(components, 2);
        for (const std::size_t index : {std::size_t{1}, std::size_t{0}}) {
            const std::string further = componentAt(components, index);
            if (isBlank(further)) continue;
            if (!street.empty()) street += '\n';
            street += further;
        }
        return street;
    }

    std::string countryCodeOf(const CardLine& line, const CardProperty& property) const {
        if (const auto code = countryCodes_.find(upperCased(line.group)); code != countryCodes_.end())
            return code->second;
        return repairedUtf8(property.parameter("CC").value_or(""));
    }

    void readName() {
        ContactCard& contact = result_.contact;
        if (const CardLine* line = lines_.first("TITLE")) contact.jobTitle = text(*line);
        if (const CardLine* line = lines_.first("NICKNAME"))
            contact.nickname = joined(listTexts(lines_.property(*line), lines_.version()), ", ");
        if (const CardLine* line = lines_.first("ORG")) {
            const std::vector<std::string> components = componentTexts(lines_.property(*line), lines_.version());
            contact.organizationName = componentAt(components, 0);
            contact.departmentName = componentAt(components, 1);
        }
        const CardLine* name = lines_.first("N");
        if (name && readComponentsOfName(lines_.property(*name))) return;
        const CardLine* formatted = lines_.first("FN");
        if (formatted) readFormattedName(text(*formatted), name != nullptr);
    }

    /// False where the name is wholly empty.
    bool readComponentsOfName(const CardProperty& property) {
        const std::vector<std::string> components = componentTexts(property, lines_.version());
        ContactCard& contact = result_.contact;
        contact.familyName = componentAt(components, 0);
        contact.givenName = componentAt(components, 1);
        contact.middleName = joined(listTexts(property, lines_.version(), 2), " ");
        return !std::ranges::all_of(components, [](const std::string& each) { return isBlank(each); });
    }

    /// A card whose N says that there is no name has an FN all the same, for FN may not be missing: one that only
    /// repeats what is shown anyway is not the person's given name.
    void readFormattedName(std::string formatted, bool hasEmptyName) {
        const ContactCard& contact = result_.contact;
        const std::string_view shown = !isBlank(contact.nickname)           ? trimmed(contact.nickname)
                                       : !isBlank(contact.organizationName) ? trimmed(contact.organizationName)
                                                                            : "Unnamed Contact";
        if (hasEmptyName && trimmed(formatted) == shown) return;
        result_.contact.givenName = std::move(formatted);
    }

    const CardLines& lines_;
    TextsOfGroups labels_, countryCodes_;
    ReadCard result_;
};

} // namespace

std::optional<ReadCard> readCard(std::string_view card) {
    const CardLines lines(card);
    if (!lines.endOfLines()) return std::nullopt;
    return Reader(lines).run();
}

} // namespace vesk::vcard
