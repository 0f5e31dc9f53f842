#pragma once

#include "VeskSupport/Records.hpp"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

// What asks for the user's attention, as the packaged runtime tells it. All words are the runtime's own.

namespace vesk {

/// What the assistant may do about an event without the user.
struct PackagedAttentionDecisionPolicy {
    std::string version;
    std::string action;
    std::string interruptionLevel;
    std::string reason;
    bool autonomousActionAllowed = false;
    bool requiresUserInput = false;

    bool operator==(const PackagedAttentionDecisionPolicy&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedAttentionDecisionPolicy> =
    recordFields(required("version", &PackagedAttentionDecisionPolicy::version),
                 required("action", &PackagedAttentionDecisionPolicy::action),
                 required("interruptionLevel", &PackagedAttentionDecisionPolicy::interruptionLevel),
                 required("reason", &PackagedAttentionDecisionPolicy::reason),
                 required("autonomousActionAllowed", &PackagedAttentionDecisionPolicy::autonomousActionAllowed),
                 required("requiresUserInput", &PackagedAttentionDecisionPolicy::requiresUserInput));

/// Whether and how the user is told of an event unasked.
struct PackagedAttentionProactiveDelivery {
    std::string version;
    std::string status;
    std::optional<std::string> mode{};
    std::optional<std::string> channel{};
    bool dryRun = false;
    bool willSend = false;
    bool requiresConversation = false;
    bool requiresQuietHoursPolicy = false;
    std::string reason;

    bool operator==(const PackagedAttentionProactiveDelivery&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedAttentionProactiveDelivery> =
    recordFields(required("version", &PackagedAttentionProactiveDelivery::version),
                 required("status", &PackagedAttentionProactiveDelivery::status),
                 optional("mode", &PackagedAttentionProactiveDelivery::mode),
                 optional("channel", &PackagedAttentionProactiveDelivery::channel),
                 required("dryRun", &PackagedAttentionProactiveDelivery::dryRun),
                 required("willSend", &PackagedAttentionProactiveDelivery::willSend),
                 required("requiresConversation", &PackagedAttentionProactiveDelivery::requiresConversation),
                 required("requiresQuietHoursPolicy", &PackagedAttentionProactiveDelivery::requiresQuietHoursPolicy),
                 required("reason", &PackagedAttentionProactiveDelivery::reason));

/// The times are whole numbers as the runtime gives them; nothing here converts them.
struct PackagedAttentionEvent {
    std::int64_t id = 0;
    std::optional<std::string> conversationId{};
    std::string eventType;
    std::string status;
    std::string severity;
    std::string sourceKind;
    std::string sourceId;
    std::optional<std::string> subject{};
    std::string summary;
    std::optional<std::int64_t> attentionAt{};
    std::optional<std::int64_t> dueAt{};
    std::int64_t updatedAt = 0;
    std::optional<PackagedAttentionDecisionPolicy> decisionPolicy{};
    std::optional<PackagedAttentionProactiveDelivery> proactiveDelivery{};

    bool operator==(const PackagedAttentionEvent&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedAttentionEvent> = recordFields(
    required("id", &PackagedAttentionEvent::id), optional("conversationId", &PackagedAttentionEvent::conversationId),
    required("eventType", &PackagedAttentionEvent::eventType), required("status", &PackagedAttentionEvent::status),
    required("severity", &PackagedAttentionEvent::severity),
    required("sourceKind", &PackagedAttentionEvent::sourceKind),
    required("sourceId", &PackagedAttentionEvent::sourceId), optional("subject", &PackagedAttentionEvent::subject),
    required("summary", &PackagedAttentionEvent::summary),
    optional("attentionAt", &PackagedAttentionEvent::attentionAt), optional("dueAt", &PackagedAttentionEvent::dueAt),
    required("updatedAt", &PackagedAttentionEvent::updatedAt),
    optional("decisionPolicy", &PackagedAttentionEvent::decisionPolicy),
    optional("proactiveDelivery", &PackagedAttentionEvent::proactiveDelivery));

/// What asks for the user's attention, counted by the words of its types and severities.
struct PackagedAttentionStatus {
    std::int64_t activeCount = 0;
    std::int64_t highCount = 0;
    std::int64_t urgentCount = 0;
    std::map<std::string, std::int64_t> byType;
    std::map<std::string, std::int64_t> bySeverity;
    std::vector<PackagedAttentionEvent> events;

    bool operator==(const PackagedAttentionStatus&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedAttentionStatus> =
    recordFields(required("activeCount", &PackagedAttentionStatus::activeCount),
                 required("highCount", &PackagedAttentionStatus::highCount),
                 required("urgentCount", &PackagedAttentionStatus::urgentCount),
                 required("byType", &PackagedAttentionStatus::byType),
                 required("bySeverity", &PackagedAttentionStatus::bySeverity),
                 required("events", &PackagedAttentionStatus::events));

} // namespace vesk
