#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/MessagesModels.hpp"

#include <cstdint>
#include <string>

/// Text messages, through scripts for the messaging program. Each call runs one script and waits for it; MessagesError
/// where it fails, the platform's error where it cannot be run. Access is settled before, by the gate.
namespace vesk::VeskMessagesOperations {

/// The latest chats in the messaging program's order. `limit` is brought into 1 to 50.
CapabilityMessagesListResponse listRecentChats(Platform& platform, std::int64_t limit, const Bundle& bundle);

/// Hands `message` over for the number or address `phone`; blanks, hyphens and parentheses of it do not count. The
/// response says that it was handed over, not that it arrived.
CapabilityMessagesSendResponse sendMessage(Platform& platform, const std::string& phone, const std::string& message,
                                           const Bundle& bundle);

} // namespace vesk::VeskMessagesOperations
