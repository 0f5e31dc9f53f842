#include "VeskPlatform/Linux/Vcard/CardEditing.hpp"

#include "VeskPlatform/Linux/Vcard/CardValues.hpp"
#include "VeskPlatform/Linux/Vcard/CardWriting.hpp"
#include "VeskPlatform/Linux/Vcard/PhysicalLines.hpp"
#include "VeskPlatform/Linux/Vdir/ComponentEditor.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <charconv>
#include <map>

namespace vesk::vcard {
namespace {

/// The line end of the card's first line, CR LF where it has none. A bare CR only where there is no LF at all: one that
/// came to stand behind it would complete it.
std::string lineEndOf(std::string_view card) {
    const PhysicalLine first = PhysicalLines(card).take();
    const std::size_t end = first.begin + first.text.size();
    const std::string_view lineEnd = card.substr(end, first.next - end);
    const bool isMixed = lineEnd == "\r" && card.find('\n') != std::string_view::npos;
    return lineEnd.empty() || isMixed ? "\r\n" : std::string(lineEnd);
}

/// The number behind those of the groups named `item` and a number.
std::uint64_t nextItem(const CardLines& lines) {
    std::uint64_t next = 1;
    for (const CardLine& line : lines.lines()) {
        const std::string_view group = line.group;
        if (!isSameWord(group.substr(0, 4), "item") || group.size() > 20) continue;
        std::uint64_t number = 0;
        const auto [end, error] = std::from_chars(group.data() + 4, group.data() + group.size(), number);
        if (error == std::errc() && end == group.data() + group.size()) next = std::max(next, number + 1);
    }
    return next;
}

/// Group, name and parameters of a property but for those that tell of its encoding, and those that miss a quotation
/// mark: the new value could hold it.
std::string headWithoutEncoding(const CardProperty& property) {
    std::string head = property.fullName;
    for (const CardParameter& parameter : property.parameters) {
        const bool isBalanced = std::ranges::count(parameter.bytes, '"') % 2 == 0;
        if (isBalanced && parameter.name != "ENCODING" && parameter.name != "CHARSET") head += ";" + parameter.bytes;
    }
    return head;
}

/// A component that other ones may follow: its last backslash does not escape what comes behind it.
std::string closedComponent(std::string component) {
    const std::size_t last = component.find_last_not_of('\\');
    const std::size_t backslashes = component.size() - (last == std::string::npos ? 0 : last + 1);
    if (backslashes % 2 == 1) component += '\\';
    return component;
}

/// A text of which nothing can be written does not take away what is there.
bool isChange(const std::string& base, const std::string& wanted) {
    return wanted != base && (isBlank(wanted) || isWritableValue(wanted));
}

class Editor {
public:
    Editor(std::string_view card, Instant now)
        : card_(card), lines_(card), writer_(lines_.version(), lineEndOf(card), nextItem(lines_)), now_(now) {}

    void setEmployment(const ContactCard& base, const ContactCard& wanted) {
        std::map<std::size_t, std::string> parts;
        if (isChange(base.organizationName, wanted.organizationName)) parts[0] = writableText(wanted.organizationName);
        if (isChange(base.departmentName, wanted.departmentName)) parts[1] = writableText(wanted.departmentName);
        if (!parts.empty()) setOrganization(parts);
        if (isChange(base.jobTitle, wanted.jobTitle)) setTitle(wanted.jobTitle);
    }

    template <typename Value>
    void append(const char* name, const std::vector<Value>& base, const std::vector<Value>& wanted,
                std::string (CardWriter::*write)(const Value&)) {
        std::string added;
        for (std::size_t i = base.size(); i < wanted.size(); ++i) added += (writer_.*write)(wanted[i]);
        insertBehind(name, std::move(added));
    }

    std::string text() {
        if (edits_.empty()) return std::string(card_);
        if (const CardLine* revision = lines_.first("REV"))
            replace(*revision, writer_.textLine(lines_.property(*revision).fullName, revisionText(now_)));
        std::string result;
        std::size_t copied = 0;
        for (const auto& [at, edit] : edits_) {
            result.append(card_, copied, at - copied).append(edit.bytes);
            copied = at + edit.removed;
        }
        return result.append(card_, copied);
    }

private:
    struct Edit {
        std::size_t removed = 0;
        std::string bytes;
    };

    void setOrganization(const std::map<std::size_t, std::string>& parts) {
        const CardLine* line = lines_.first("ORG");
        if (!line) {
            std::vector<std::string> components(parts.rbegin()->first + 1);
            for (const auto& [index, text] : parts) components[index] = text;
            return insertAtEnd(writer_.componentsLine("ORG", components));
        }
        const CardProperty property = lines_.property(*line);
        const std::string head = headWithoutEncoding(property);
        // Where nothing but escapes is in the way, the other components stay as they are written.
        const bool keepsBytes = lines_.version() != CardVersion::v21 && head.size() == fullHead(property).size();
        std::vector<std::string> components =
            keepsBytes ? splitValue(property.value, ';') : componentBytes(property, lines_.version());
        if (keepsBytes) std::ranges::transform(components, components.begin(), closedComponent);
        components.resize(std::max(components.size(), parts.rbegin()->first + 1));
        for (const auto& [index, text] : parts) components[index] = keepsBytes ? vdir::escapedText(text) : text;
        replace(*line, keepsBytes ? writer_.escapedLine(head, joined(components, ";"))
                                  : writer_.componentsLine(head, components));
    }

    static std::string fullHead(const CardProperty& property) {
        std::string head = property.fullName;
        for (const CardParameter& parameter : property.parameters) head += ";" + parameter.bytes;
        return head;
    }

    void setTitle(const std::string& title) {
        const CardLine* line = lines_.first("TITLE");
        if (!line) return insertAtEnd(writer_.textLine("TITLE", title));
        replace(*line, writer_.textLine(headWithoutEncoding(lines_.property(*line)), title));
    }

    void replace(const CardLine& line, std::string bytes) {
        Edit& edit = edits_[line.range.begin];
        edit.removed = line.range.end - line.range.begin;
        edit.bytes += bytes;
    }

    void insertBehind(const char* name, std::string bytes) {
        if (bytes.empty()) return;
        const auto& lines = lines_.lines();
        const auto last =
            std::find_if(lines.rbegin(), lines.rend(), [&](const auto& each) { return each.name == name; });
        if (last == lines.rend()) return insertAtEnd(std::move(bytes));
        insert(last->range.end, last->isOpen, std::move(bytes));
    }

    void insertAtEnd(std::string bytes) { insert(*lines_.endOfLines(), lines_.isOpenAtEnd(), std::move(bytes)); }

    /// A line that waits for its continuation gets an empty one first.
    void insert(std::size_t at, bool isBehindOpenLine, std::string bytes) {
        Edit& edit = edits_[at];
        if (isBehindOpenLine && edit.bytes.empty()) edit.bytes = emptyLineAt(at);
        edit.bytes += bytes;
    }

    /// Behind a CR, a line end with an LF would only complete the CR's own.
    std::string emptyLineAt(std::size_t at) const {
        std::string lineEnd = lineEndOf(card_);
        if (card_[at - 1] == '\r' && lineEnd.ends_with('\n')) lineEnd += '\n';
        return lineEnd;
    }

    std::string_view card_;
    CardLines lines_;
    CardWriter writer_;
    Instant now_;
    std::map<std::size_t, Edit> edits_;
};

std::string displayName(const ContactCard& contact) {
    std::vector<std::string> names;
    for (const std::string& name : {contact.givenName, contact.middleName, contact.familyName})
        if (isWritableValue(name)) names.emplace_back(trimmed(name));
    if (!names.empty()) return joined(names, " ");
    if (isWritableValue(contact.nickname)) return std::string(trimmed(contact.nickname));
    if (isWritableValue(contact.organizationName)) return std::string(trimmed(contact.organizationName));
    return "Unnamed Contact";
}

std::string namesText(const CardWriter& writer, const ContactCard& contact) {
    std::string text = writer.componentsLine("N", {writableText(contact.familyName), writableText(contact.givenName),
                                                   writableText(contact.middleName), "", ""});
    text += writer.textLine("FN", displayName(contact));
    if (isWritableValue(contact.nickname)) text += writer.textLine("NICKNAME", contact.nickname);
    const std::string organization = writableText(contact.organizationName);
    const std::string department = writableText(contact.departmentName);
    if (!department.empty())
        text += writer.componentsLine("ORG", {organization, department});
    else if (!organization.empty())
        text += writer.textLine("ORG", organization);
    if (isWritableValue(contact.jobTitle)) text += writer.textLine("TITLE", contact.jobTitle);
    return text;
}

} // namespace

std::string editedCardText(std::string_view card, const ContactCard& base, const ContactCard& wanted, Instant now) {
    if (!CardLines(card).endOfLines()) return std::string(card);
    Editor editor(card, now);
    editor.setEmployment(base, wanted);
    editor.append("TEL", base.phoneNumbers, wanted.phoneNumbers, &CardWriter::phone);
    editor.append("EMAIL", base.emailAddresses, wanted.emailAddresses, &CardWriter::email);
    editor.append("ADR", base.postalAddresses, wanted.postalAddresses, &CardWriter::address);
    return editor.text();
}

std::string newCardText(const ContactCard& contact, const std::string& uid, Instant now) {
    CardWriter writer(CardVersion::v30, "\r\n", 1);
    std::string text = "BEGIN:VCARD\r\nVERSION:3.0\r\nPRODID:-//Vesk//VeskShellCore//EN\r\n";
    text += writer.textLine("UID", uid) + namesText(writer, contact);
    for (const LabeledValue& phone : contact.phoneNumbers) text += writer.phone(phone);
    for (const LabeledValue& email : contact.emailAddresses) text += writer.email(email);
    for (const LabeledPostalAddress& address : contact.postalAddresses) text += writer.address(address);
    return text + writer.textLine("REV", revisionText(now)) + "END:VCARD\r\n";
}

} // namespace vesk::vcard
