#pragma once

#include "VeskShellCore/CapabilityModels.hpp"

#include <cstdint>

namespace vesk {

struct CapabilityTodoDuePayload {
    /// `2026-04-26T09:30`, or `2026-04-26` without an hour and a minute; no zone.
    std::string iso;
    /// For people, in the user's locale and zone.
    std::string local;
    bool hasTime = false;

    bool operator==(const CapabilityTodoDuePayload&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityTodoDuePayload> =
    recordFields(required("iso", &CapabilityTodoDuePayload::iso), required("local", &CapabilityTodoDuePayload::local),
                 required("hasTime", &CapabilityTodoDuePayload::hasTime));

/// Times are UTC, `2026-04-26T12:00:00Z`.
struct CapabilityTodoItem {
    std::string id;
    std::string title;
    std::optional<std::string> notes;
    bool completed = false;
    std::optional<CapabilityTodoDuePayload> due;
    std::optional<std::string> completionDate;
    std::optional<std::string> createdAt;
    std::optional<std::string> updatedAt;
    bool dueToday = false;
    bool overdue = false;

    bool operator==(const CapabilityTodoItem&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityTodoItem> = recordFields(
    required("id", &CapabilityTodoItem::id), required("title", &CapabilityTodoItem::title),
    optional("notes", &CapabilityTodoItem::notes), required("completed", &CapabilityTodoItem::completed),
    optional("due", &CapabilityTodoItem::due), optional("completionDate", &CapabilityTodoItem::completionDate),
    optional("createdAt", &CapabilityTodoItem::createdAt), optional("updatedAt", &CapabilityTodoItem::updatedAt),
    required("dueToday", &CapabilityTodoItem::dueToday), required("overdue", &CapabilityTodoItem::overdue));

struct CapabilityTodoStats {
    std::int64_t total = 0;
    std::int64_t open = 0;
    std::int64_t completed = 0;
    std::int64_t dueToday = 0;
    std::int64_t overdue = 0;
    std::int64_t needsAttentionToday = 0;

    bool operator==(const CapabilityTodoStats&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityTodoStats> =
    recordFields(required("total", &CapabilityTodoStats::total), required("open", &CapabilityTodoStats::open),
                 required("completed", &CapabilityTodoStats::completed),
                 required("dueToday", &CapabilityTodoStats::dueToday),
                 required("overdue", &CapabilityTodoStats::overdue),
                 required("needsAttentionToday", &CapabilityTodoStats::needsAttentionToday));

struct CapabilityTodoResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    std::string operation;
    /// The title of the list that was used.
    std::string list;
    std::optional<CapabilityTodoView> view;
    std::optional<CapabilityTodoItem> item;
    std::optional<std::vector<CapabilityTodoItem>> items;
    std::optional<CapabilityTodoStats> stats;
    std::string detail;

    bool operator==(const CapabilityTodoResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityTodoResponse> =
    recordFields(required("brokerPath", &CapabilityTodoResponse::brokerPath),
                 optional("bundlePath", &CapabilityTodoResponse::bundlePath),
                 required("operation", &CapabilityTodoResponse::operation),
                 required("list", &CapabilityTodoResponse::list), optional("view", &CapabilityTodoResponse::view),
                 optional("item", &CapabilityTodoResponse::item), optional("items", &CapabilityTodoResponse::items),
                 optional("stats", &CapabilityTodoResponse::stats),
                 required("detail", &CapabilityTodoResponse::detail));

} // namespace vesk
