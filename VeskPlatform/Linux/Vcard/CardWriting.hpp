#pragma once

#include "VeskPlatform/ContactStore.hpp"
#include "VeskPlatform/Linux/Vcard/CardLines.hpp"
#include "VeskSupport/Instant.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::vcard {

/// What can be written: well-formed UTF-8 without control characters but LF and tabs.
std::string writableText(std::string_view text);

/// Whether a component that holds a value's text may be written; one that is blank is not read back.
bool isWritableValue(std::string_view text);

/// A point in time as REV has it, in UTC to the second.
std::string revisionText(Instant now);

/// Writes content lines by the rules of one version: 3.0 and 4.0 escape and fold, 2.1 writes what is not plain ASCII
/// as quoted-printable UTF-8.
class CardWriter {
public:
    /// `lineEnd` closes each line; groups for own labels are numbered from `nextItem`.
    CardWriter(CardVersion version, std::string lineEnd, std::uint64_t nextItem);

    /// `head` is a property's name with its group and parameters, all as they shall stand.
    std::string textLine(const std::string& head, std::string_view text) const;
    /// The components between semicolons. In 2.1 they may be bytes of an unknown character set, kept as they are.
    std::string componentsLine(const std::string& head, const std::vector<std::string>& components) const;
    /// A line of 3.0 or 4.0 whose value has its escapes already.
    std::string escapedLine(const std::string& head, std::string_view value) const;

    // A property with its label, and the lines of its group; nothing for a blank one.
    std::string phone(const LabeledValue& phone);
    std::string email(const LabeledValue& email);
    std::string address(const LabeledPostalAddress& address);

private:
    std::string grouped(const std::string& name, const std::string& parameters, const std::string& ownLabel,
                        const std::string& countryCode, const std::vector<std::string>& components);
    std::string quotedPrintableLine(const std::string& head, const std::string& encodedValue) const;
    std::string typeParameter(std::string_view types) const;

    CardVersion version_;
    std::string lineEnd_;
    std::uint64_t nextItem_;
};

} // namespace vesk::vcard
