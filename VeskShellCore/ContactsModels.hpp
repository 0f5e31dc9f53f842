#pragma once

#include "VeskSupport/Records.hpp"

#include <optional>
#include <string>
#include <vector>

namespace vesk {

struct CapabilityContactField {
    std::string label;
    std::string value;

    bool operator==(const CapabilityContactField&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityContactField> =
    recordFields(required("label", &CapabilityContactField::label), required("value", &CapabilityContactField::value));

struct CapabilityContactAddress {
    std::string label;
    std::optional<std::string> street;
    std::optional<std::string> city;
    std::optional<std::string> state;
    std::optional<std::string> postalCode;
    std::optional<std::string> country;
    std::optional<std::string> countryCode;
    /// The mailing form, for people; ignored in a request.
    std::optional<std::string> formattedAddress;

    bool operator==(const CapabilityContactAddress&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityContactAddress> =
    recordFields(required("label", &CapabilityContactAddress::label),
                 optional("street", &CapabilityContactAddress::street),
                 optional("city", &CapabilityContactAddress::city), optional("state", &CapabilityContactAddress::state),
                 optional("postalCode", &CapabilityContactAddress::postalCode),
                 optional("country", &CapabilityContactAddress::country),
                 optional("countryCode", &CapabilityContactAddress::countryCode),
                 optional("formattedAddress", &CapabilityContactAddress::formattedAddress));

struct CapabilityContactEntry {
    std::string id;
    /// The display name; never empty.
    std::string name;
    std::vector<CapabilityContactField> phones;
    std::vector<CapabilityContactField> emails;
    /// Absent where there is none.
    std::optional<std::vector<CapabilityContactAddress>> addresses;
    std::optional<std::string> organization;
    std::optional<std::string> jobTitle;
    std::optional<std::string> department;
    /// Never filled: notes are neither read nor shown.
    std::optional<std::string> note;

    bool operator==(const CapabilityContactEntry&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityContactEntry> = recordFields(
    required("id", &CapabilityContactEntry::id), required("name", &CapabilityContactEntry::name),
    required("phones", &CapabilityContactEntry::phones), required("emails", &CapabilityContactEntry::emails),
    optional("addresses", &CapabilityContactEntry::addresses),
    optional("organization", &CapabilityContactEntry::organization),
    optional("jobTitle", &CapabilityContactEntry::jobTitle),
    optional("department", &CapabilityContactEntry::department), optional("note", &CapabilityContactEntry::note));

struct CapabilityContactsSearchResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    /// Trimmed.
    std::string query;
    std::vector<CapabilityContactEntry> contacts;
    std::string detail;

    bool operator==(const CapabilityContactsSearchResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityContactsSearchResponse> =
    recordFields(required("brokerPath", &CapabilityContactsSearchResponse::brokerPath),
                 optional("bundlePath", &CapabilityContactsSearchResponse::bundlePath),
                 required("query", &CapabilityContactsSearchResponse::query),
                 required("contacts", &CapabilityContactsSearchResponse::contacts),
                 required("detail", &CapabilityContactsSearchResponse::detail));

struct CapabilityContactSaveResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    CapabilityContactEntry contact;
    std::string detail;

    bool operator==(const CapabilityContactSaveResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityContactSaveResponse> =
    recordFields(required("brokerPath", &CapabilityContactSaveResponse::brokerPath),
                 optional("bundlePath", &CapabilityContactSaveResponse::bundlePath),
                 required("contact", &CapabilityContactSaveResponse::contact),
                 required("detail", &CapabilityContactSaveResponse::detail));

/// A contact to create, or to extend where `targetId` names one.
struct CapabilityContactSaveRequest {
    std::optional<std::string> targetId;
    std::string name;
    std::optional<std::vector<CapabilityContactField>> phones;
    std::optional<std::vector<CapabilityContactField>> emails;
    std::optional<std::vector<CapabilityContactAddress>> addresses;
    std::optional<std::string> organization;
    std::optional<std::string> jobTitle;
    std::optional<std::string> department;
    /// Accepted and ignored: notes stay out of the system.
    std::optional<std::string> note;

    bool operator==(const CapabilityContactSaveRequest&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityContactSaveRequest> =
    recordFields(optional("targetId", &CapabilityContactSaveRequest::targetId),
                 required("name", &CapabilityContactSaveRequest::name),
                 optional("phones", &CapabilityContactSaveRequest::phones),
                 optional("emails", &CapabilityContactSaveRequest::emails),
                 optional("addresses", &CapabilityContactSaveRequest::addresses),
                 optional("organization", &CapabilityContactSaveRequest::organization),
                 optional("jobTitle", &CapabilityContactSaveRequest::jobTitle),
                 optional("department", &CapabilityContactSaveRequest::department),
                 optional("note", &CapabilityContactSaveRequest::note));

} // namespace vesk
