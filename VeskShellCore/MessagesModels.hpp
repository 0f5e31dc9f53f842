#pragma once

#include "VeskSupport/Records.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

struct CapabilityMessagesChat {
    /// The messaging program's own identifier.
    std::string id;

    bool operator==(const CapabilityMessagesChat&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityMessagesChat> = recordFields(required("id", &CapabilityMessagesChat::id));

struct CapabilityMessagesListResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    std::vector<CapabilityMessagesChat> chats;
    /// The limit that was kept, 1 to 50.
    std::int64_t limit = 0;
    std::string detail;

    bool operator==(const CapabilityMessagesListResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityMessagesListResponse> =
    recordFields(required("brokerPath", &CapabilityMessagesListResponse::brokerPath),
                 optional("bundlePath", &CapabilityMessagesListResponse::bundlePath),
                 required("chats", &CapabilityMessagesListResponse::chats),
                 required("limit", &CapabilityMessagesListResponse::limit),
                 required("detail", &CapabilityMessagesListResponse::detail));

struct CapabilityMessagesSendResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    /// The number or address as it was handed over.
    std::string phone;
    /// In characters as people count them.
    std::int64_t messageLength = 0;
    std::string detail;

    bool operator==(const CapabilityMessagesSendResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityMessagesSendResponse> =
    recordFields(required("brokerPath", &CapabilityMessagesSendResponse::brokerPath),
                 optional("bundlePath", &CapabilityMessagesSendResponse::bundlePath),
                 required("phone", &CapabilityMessagesSendResponse::phone),
                 required("messageLength", &CapabilityMessagesSendResponse::messageLength),
                 required("detail", &CapabilityMessagesSendResponse::detail));

} // namespace vesk
