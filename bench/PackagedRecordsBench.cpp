#include "VeskShellCore/PackagedServiceStatus.hpp"
#include "VeskSupport/Json.hpp"

#include <benchmark/benchmark.h>

namespace vesk {
namespace {

/// An event with the texts that events usually have.
PackagedAttentionEvent event(std::int64_t id) {
    PackagedAttentionEvent event;
    event.id = id;
    event.conversationId = "7f1b2c9e-0d55-4c1c-9a53-5f0f1f2a7c11";
    event.eventType = "reply_overdue";
    event.status = "active";
    event.severity = "high";
    event.sourceKind = "mail_message";
    event.sourceId = "CAF3k2v9a1t5r0q4m6j3p8@mail.example.com";
    event.subject = "Re: the invoice of April – Größe und Übersicht";
    event.summary = "Dana asked for the \"draft\" on Tuesday:\nhttps://example.com/draft has had no answer since.";
    event.attentionAt = 1777000000000 + id;
    event.dueAt = 1777003600000 + id;
    event.updatedAt = 1776990000000 + id;
    event.decisionPolicy = {{.version = "1",
                             .action = "notify",
                             .interruptionLevel = "passive",
                             .reason = "It can wait until the user looks.",
                             .autonomousActionAllowed = false,
                             .requiresUserInput = true}};
    event.proactiveDelivery = {{.version = "1",
                                .status = "planned",
                                .mode = "digest",
                                .channel = "chat",
                                .dryRun = false,
                                .willSend = true,
                                .requiresConversation = true,
                                .requiresQuietHoursPolicy = true,
                                .reason = "The digest of the morning takes it along."}};
    return event;
}

/// The document of a service of which so many events ask for attention that it has `bytes` bytes or a few more.
std::string statusOf(std::size_t bytes) {
    PackagedServiceStatus status;
    status.runtimeMode = "packaged";
    status.attention.emplace().byType = {{"reply_overdue", 1}};
    const std::size_t bytesOfEvent = writeJson(toJson(event(0))).size();
    for (std::int64_t id = 0; std::cmp_less(id, bytes / bytesOfEvent + 1); ++id)
        status.attention->events.push_back(event(id));
    return writeJson(toJson(status));
}

/// What the shell does with an answer of the runtime.
void readServiceStatus(benchmark::State& state) {
    const std::string text = statusOf(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(fromJson<PackagedServiceStatus>(parseJson(text)));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(readServiceStatus)->Arg(5'000'000)->Arg(5'000)->Unit(benchmark::kMicrosecond);

void parseServiceStatus(benchmark::State& state) {
    const std::string text = statusOf(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(parseJson(text));
}
BENCHMARK(parseServiceStatus)->Arg(5'000'000)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace vesk
