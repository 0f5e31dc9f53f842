#include "VeskShellCore/PackagedMemories.hpp"
#include "tests/VeskShellCore/RecordTableWalk.hpp"

namespace vesk::test {

template <> RecordSample<PackagedMemoryRecord> sampleOf() {
    return {
        .name = "PackagedMemoryRecord",
        .record = {.id = 17,
                   .conversationId = "c-1",
                   .conversationTitle = "Garden plans for May",
                   .conversationShortTitle = "Garden",
                   .conversationSubtitle = "With Olga",
                   .text = "Likes tulips.",
                   .kind = "preference",
                   .source = "chat",
                   .pinned = true,
                   .createdAt = 1777000000004,
                   .updatedAt = 1777000000003,
                   .lastUsedAt = 1777000000005},
        .required =
            "id conversationId conversationTitle conversationShortTitle text kind source pinned createdAt updatedAt",
        .optional = "conversationSubtitle lastUsedAt"};
}

template <> RecordSample<PackagedMemoryCreateTarget> sampleOf() {
    return {.name = "PackagedMemoryCreateTarget",
            .record = {.conversationId = "c-1",
                       .source = "chat",
                       .conversationTitle = "Garden plans for May",
                       .conversationShortTitle = "Garden",
                       .conversationSubtitle = "With Olga"},
            .required = "conversationId source conversationTitle conversationShortTitle",
            .optional = "conversationSubtitle"};
}

template <> RecordSample<PackagedMemoriesReport> sampleOf() {
    return {.name = "PackagedMemoriesReport",
            .record = {.runtimeMode = "packaged",
                       .memories = {{.id = 17,
                                     .conversationId = "c-1",
                                     .conversationTitle = "Garden plans for May",
                                     .conversationShortTitle = "Garden",
                                     .text = "Likes tulips.",
                                     .kind = "preference",
                                     .source = "chat",
                                     .pinned = true,
                                     .createdAt = 1777000000004,
                                     .updatedAt = 1777000000003}},
                       .createTarget = PackagedMemoryCreateTarget{.conversationId = "c-1",
                                                                  .source = "chat",
                                                                  .conversationTitle = "Garden plans for May",
                                                                  .conversationShortTitle = "Garden"}},
            .required = "runtimeMode memories",
            .optional = "createTarget"};
}

template <> RecordSample<PackagedMemoryMutationEnvelope> sampleOf() {
    return {.name = "PackagedMemoryMutationEnvelope",
            .record = {.ok = true,
                       .runtimeMode = "packaged",
                       .action = "update",
                       .status = "changed",
                       .message = "Saved.",
                       .memory = {.id = 17,
                                  .conversationId = "c-1",
                                  .conversationTitle = "Garden plans for May",
                                  .conversationShortTitle = "Garden",
                                  .text = "Likes tulips.",
                                  .kind = "preference",
                                  .source = "chat",
                                  .pinned = true,
                                  .createdAt = 1777000000004,
                                  .updatedAt = 1777000000003},
                       .createTarget = PackagedMemoryCreateTarget{.conversationId = "c-1",
                                                                  .source = "chat",
                                                                  .conversationTitle = "Garden plans for May",
                                                                  .conversationShortTitle = "Garden"}},
            .required = "ok runtimeMode action status memory",
            .optional = "message createTarget"};
}

using AllRecords = testing::Types<PackagedMemoryRecord, PackagedMemoryCreateTarget, PackagedMemoriesReport,
                                  PackagedMemoryMutationEnvelope>;
INSTANTIATE_TYPED_TEST_SUITE_P(PackagedMemories, RecordTable, AllRecords, RecordNames);

} // namespace vesk::test
