#pragma once

#include "VeskPlatform/Clock.hpp"
#include "VeskPlatform/Linux/ConsentDatabase.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "vesk/CommandLine.hpp"

#include <optional>
#include <string>
#include <vector>

namespace vesk {

/// One capability's consent, as it is listed.
struct ConsentEntry {
    std::string id;
    std::string title;
    CapabilityAuthorizationState state{};
    std::optional<std::string> decidedAt;
    std::optional<std::string> decidedBy;
};

template <>
inline constexpr auto recordTable<ConsentEntry> =
    recordFields(required("id", &ConsentEntry::id), required("title", &ConsentEntry::title),
                 required("state", &ConsentEntry::state), optional("decidedAt", &ConsentEntry::decidedAt),
                 optional("decidedBy", &ConsentEntry::decidedBy));

struct ConsentList {
    std::vector<ConsentEntry> capabilities;
};

template <>
inline constexpr auto recordTable<ConsentList> = recordFields(required("capabilities", &ConsentList::capabilities));

/// Whether the user's consent decides about a capability: for all but full disk access and iCloud, which are what they
/// are found to be.
bool hasConsent(CapabilityKind kind);

/// The capabilities that have a consent, in order.
std::vector<CapabilityKind> capabilitiesWithConsent();

/// The entries of `kinds`, from the decisions of the database.
std::vector<ConsentEntry> consentEntries(const std::vector<CapabilityKind>& kinds,
                                         const std::map<std::string, ConsentDecision>& decisions);

/// The words of a state for people: "not determined".
std::string stateText(CapabilityAuthorizationState state);

/// Runs `vesk consent` and returns what it prints: the capabilities that it was about, as they are afterwards. Throws
/// UsageError for an unknown name and ErrorRecord for what could not be done.
std::string runConsent(const ConsentCommand& command, ConsentDatabase& database, Clock& clock);

} // namespace vesk
