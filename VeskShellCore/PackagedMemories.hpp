#pragma once

#include "VeskSupport/Records.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The memories of the packaged runtime. All words are the runtime's own and are passed on as text.

namespace vesk {

/// Something that the assistant keeps in mind. The times are whole numbers as the runtime gives them.
struct PackagedMemoryRecord {
    std::int64_t id = 0;
    std::string conversationId;
    std::string conversationTitle;
    std::string conversationShortTitle;
    std::optional<std::string> conversationSubtitle{};
    std::string text;
    std::string kind;
    std::string source;
    bool pinned = false;
    std::int64_t createdAt = 0;
    std::int64_t updatedAt = 0;
    std::optional<std::int64_t> lastUsedAt{};

    bool operator==(const PackagedMemoryRecord&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedMemoryRecord> = recordFields(
    required("id", &PackagedMemoryRecord::id), required("conversationId", &PackagedMemoryRecord::conversationId),
    required("conversationTitle", &PackagedMemoryRecord::conversationTitle),
    required("conversationShortTitle", &PackagedMemoryRecord::conversationShortTitle),
    optional("conversationSubtitle", &PackagedMemoryRecord::conversationSubtitle),
    required("text", &PackagedMemoryRecord::text), required("kind", &PackagedMemoryRecord::kind),
    required("source", &PackagedMemoryRecord::source), required("pinned", &PackagedMemoryRecord::pinned),
    required("createdAt", &PackagedMemoryRecord::createdAt), required("updatedAt", &PackagedMemoryRecord::updatedAt),
    optional("lastUsedAt", &PackagedMemoryRecord::lastUsedAt));

/// The conversation that a new memory would belong to.
struct PackagedMemoryCreateTarget {
    std::string conversationId;
    std::string source;
    std::string conversationTitle;
    std::string conversationShortTitle;
    std::optional<std::string> conversationSubtitle{};

    bool operator==(const PackagedMemoryCreateTarget&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedMemoryCreateTarget> =
    recordFields(required("conversationId", &PackagedMemoryCreateTarget::conversationId),
                 required("source", &PackagedMemoryCreateTarget::source),
                 required("conversationTitle", &PackagedMemoryCreateTarget::conversationTitle),
                 required("conversationShortTitle", &PackagedMemoryCreateTarget::conversationShortTitle),
                 optional("conversationSubtitle", &PackagedMemoryCreateTarget::conversationSubtitle));

struct PackagedMemoriesReport {
    std::string runtimeMode;
    std::vector<PackagedMemoryRecord> memories;
    std::optional<PackagedMemoryCreateTarget> createTarget{};

    bool operator==(const PackagedMemoriesReport&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedMemoriesReport> =
    recordFields(required("runtimeMode", &PackagedMemoriesReport::runtimeMode),
                 required("memories", &PackagedMemoriesReport::memories),
                 optional("createTarget", &PackagedMemoriesReport::createTarget));

/// The answer to making, changing or removing a memory.
struct PackagedMemoryMutationEnvelope {
    bool ok = false;
    std::string runtimeMode;
    std::string action;
    std::string status;
    std::optional<std::string> message{};
    PackagedMemoryRecord memory;
    std::optional<PackagedMemoryCreateTarget> createTarget{};

    bool operator==(const PackagedMemoryMutationEnvelope&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedMemoryMutationEnvelope> =
    recordFields(required("ok", &PackagedMemoryMutationEnvelope::ok),
                 required("runtimeMode", &PackagedMemoryMutationEnvelope::runtimeMode),
                 required("action", &PackagedMemoryMutationEnvelope::action),
                 required("status", &PackagedMemoryMutationEnvelope::status),
                 optional("message", &PackagedMemoryMutationEnvelope::message),
                 required("memory", &PackagedMemoryMutationEnvelope::memory),
                 optional("createTarget", &PackagedMemoryMutationEnvelope::createTarget));

} // namespace vesk
