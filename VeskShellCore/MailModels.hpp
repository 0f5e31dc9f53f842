#pragma once

#include "VeskShellCore/CapabilityModels.hpp"

#include <cstdint>

namespace vesk {

struct CapabilityMailMessage {
    /// The mail program's own identifier.
    std::string sourceId;
    /// That of the message's header, without brackets.
    std::optional<std::string> messageId;
    std::optional<std::string> mailbox;
    std::optional<std::string> account;
    std::optional<std::string> sender;
    std::optional<std::string> subject;
    /// In the words of the user's locale, never parsed.
    std::optional<std::string> receivedAt;
    bool read = false;
    bool flagged = false;
    /// The beginning of the content, on one line.
    std::optional<std::string> preview;

    bool operator==(const CapabilityMailMessage&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityMailMessage> = recordFields(
    required("sourceId", &CapabilityMailMessage::sourceId), optional("messageId", &CapabilityMailMessage::messageId),
    optional("mailbox", &CapabilityMailMessage::mailbox), optional("account", &CapabilityMailMessage::account),
    optional("sender", &CapabilityMailMessage::sender), optional("subject", &CapabilityMailMessage::subject),
    optional("receivedAt", &CapabilityMailMessage::receivedAt), required("read", &CapabilityMailMessage::read),
    required("flagged", &CapabilityMailMessage::flagged), optional("preview", &CapabilityMailMessage::preview));

struct CapabilityMailListResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    CapabilityMailView view = CapabilityMailView::unread;
    std::vector<CapabilityMailMessage> messages;
    /// The limit that was kept, 1 to 50.
    std::int64_t limit = 0;
    std::string detail;

    bool operator==(const CapabilityMailListResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityMailListResponse> = recordFields(
    required("brokerPath", &CapabilityMailListResponse::brokerPath),
    optional("bundlePath", &CapabilityMailListResponse::bundlePath),
    required("view", &CapabilityMailListResponse::view), required("messages", &CapabilityMailListResponse::messages),
    required("limit", &CapabilityMailListResponse::limit), required("detail", &CapabilityMailListResponse::detail));

struct CapabilityMailFollowupCheckResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    bool replyFound = false;
    /// As it was given, whether it is a time or not.
    std::optional<std::string> checkedSinceAt;
    std::optional<std::string> sourceId;
    std::optional<std::string> messageId;
    std::optional<std::string> sender;
    std::optional<std::string> subject;
    /// At most ten.
    std::vector<CapabilityMailMessage> matchedMessages;
    /// The limit that was kept, 1 to 200.
    std::int64_t limit = 0;
    std::string detail;

    bool operator==(const CapabilityMailFollowupCheckResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityMailFollowupCheckResponse> =
    recordFields(required("brokerPath", &CapabilityMailFollowupCheckResponse::brokerPath),
                 optional("bundlePath", &CapabilityMailFollowupCheckResponse::bundlePath),
                 required("replyFound", &CapabilityMailFollowupCheckResponse::replyFound),
                 optional("checkedSinceAt", &CapabilityMailFollowupCheckResponse::checkedSinceAt),
                 optional("sourceId", &CapabilityMailFollowupCheckResponse::sourceId),
                 optional("messageId", &CapabilityMailFollowupCheckResponse::messageId),
                 optional("sender", &CapabilityMailFollowupCheckResponse::sender),
                 optional("subject", &CapabilityMailFollowupCheckResponse::subject),
                 required("matchedMessages", &CapabilityMailFollowupCheckResponse::matchedMessages),
                 required("limit", &CapabilityMailFollowupCheckResponse::limit),
                 required("detail", &CapabilityMailFollowupCheckResponse::detail));

} // namespace vesk
