#include "VeskShellCore/PackagedAttention.hpp"
#include "tests/VeskShellCore/RecordTableWalk.hpp"

namespace vesk::test {

template <> RecordSample<PackagedAttentionDecisionPolicy> sampleOf() {
    return {.name = "PackagedAttentionDecisionPolicy",
            .record = {.version = "v1",
                       .action = "ask",
                       .interruptionLevel = "passive",
                       .reason = "quiet hours",
                       .autonomousActionAllowed = true,
                       .requiresUserInput = false},
            .required = "version action interruptionLevel reason autonomousActionAllowed requiresUserInput",
            .booleans = {{"autonomousActionAllowed", &PackagedAttentionDecisionPolicy::autonomousActionAllowed},
                         {"requiresUserInput", &PackagedAttentionDecisionPolicy::requiresUserInput}}};
}

template <> RecordSample<PackagedAttentionProactiveDelivery> sampleOf() {
    return {.name = "PackagedAttentionProactiveDelivery",
            .record = {.version = "v2",
                       .status = "planned",
                       .mode = "digest",
                       .channel = "chat",
                       .dryRun = true,
                       .willSend = false,
                       .requiresConversation = true,
                       .requiresQuietHoursPolicy = false,
                       .reason = "no conversation"},
            .required = "version status dryRun willSend requiresConversation requiresQuietHoursPolicy reason",
            .optional = "mode channel",
            .booleans = {{"dryRun", &PackagedAttentionProactiveDelivery::dryRun},
                         {"willSend", &PackagedAttentionProactiveDelivery::willSend},
                         {"requiresConversation", &PackagedAttentionProactiveDelivery::requiresConversation},
                         {"requiresQuietHoursPolicy", &PackagedAttentionProactiveDelivery::requiresQuietHoursPolicy}}};
}

template <> RecordSample<PackagedAttentionEvent> sampleOf() {
    return {.name = "PackagedAttentionEvent",
            .record = {.id = 17,
                       .conversationId = "c-1",
                       .eventType = "reply_due",
                       .status = "active",
                       .severity = "high",
                       .sourceKind = "mail",
                       .sourceId = "m-17",
                       .subject = "Invoice",
                       .summary = "An invoice is due.",
                       .attentionAt = 1777000000001,
                       .dueAt = 1777000000002,
                       .updatedAt = 1777000000003,
                       .decisionPolicy = PackagedAttentionDecisionPolicy{.version = "v1",
                                                                         .action = "ask",
                                                                         .interruptionLevel = "passive",
                                                                         .reason = "quiet hours",
                                                                         .autonomousActionAllowed = true,
                                                                         .requiresUserInput = false},
                       .proactiveDelivery = PackagedAttentionProactiveDelivery{.version = "v2",
                                                                               .status = "planned",
                                                                               .dryRun = true,
                                                                               .willSend = false,
                                                                               .requiresConversation = true,
                                                                               .requiresQuietHoursPolicy = false,
                                                                               .reason = "no conversation"}},
            .required = "id eventType status severity sourceKind sourceId summary updatedAt",
            .optional = "conversationId subject attentionAt dueAt decisionPolicy proactiveDelivery"};
}

template <> RecordSample<PackagedAttentionStatus> sampleOf() {
    return {.name = "PackagedAttentionStatus",
            .record = {.activeCount = 3,
                       .highCount = 2,
                       .urgentCount = 1,
                       .byType = {{"reply_due", 2}, {"deadline", 1}},
                       .bySeverity = {{"high", 3}},
                       .events = {{.id = 17,
                                   .eventType = "reply_due",
                                   .status = "active",
                                   .severity = "high",
                                   .sourceKind = "mail",
                                   .sourceId = "m-17",
                                   .summary = "An invoice is due.",
                                   .updatedAt = 1777000000003}}},
            .required = "activeCount highCount urgentCount byType bySeverity events"};
}

using AllRecords = testing::Types<PackagedAttentionDecisionPolicy, PackagedAttentionProactiveDelivery,
                                  PackagedAttentionEvent, PackagedAttentionStatus>;
INSTANTIATE_TYPED_TEST_SUITE_P(PackagedAttention, RecordTable, AllRecords, RecordNames);

} // namespace vesk::test
