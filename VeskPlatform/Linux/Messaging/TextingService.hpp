#pragma once

#include "VeskPlatform/Linux/Bus/BusConnection.hpp"
#include "VeskPlatform/Linux/Messaging/Messaging.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

/// A device as its service knows it. The obstacle is as in MessagingDevice.
struct TextingDevice {
    std::string id;
    std::string name;
    std::string obstacle;
};

/// One end of a conversation and when something last came or went there; none where nobody knows.
struct TextingChat {
    std::string numbers;
    /// Greater is later, in a unit of the service's own.
    std::optional<std::int64_t> latest;
};

/// The numbers of the chats, each once, the one with the latest message first, at most `limit`; those without a time
/// come last in the order in which they were. Control characters in a number are blanks, empty numbers are none.
std::vector<std::string> latestNumbers(std::vector<TextingChat> chats, std::size_t limit);

/// A service that carries text messages over devices. Failures are BusErrors with the service's own message.
class TextingService {
public:
    virtual ~TextingService() = default;

    /// For people.
    virtual std::string name() const = 0;
    virtual BusKind bus() const = 0;
    /// The name on the bus.
    virtual std::string busName() const = 0;

    /// Starts a dormant service. In the order in which the devices are tried.
    virtual std::vector<TextingDevice> devices(BusConnection& bus, std::chrono::milliseconds patience) = 0;
    virtual std::vector<TextingChat> chats(BusConnection& bus, const TextingDevice& device) = 0;
    virtual void send(BusConnection& bus, const TextingDevice& device, const MessagesSendQuestion& message) = 0;
};

} // namespace vesk
