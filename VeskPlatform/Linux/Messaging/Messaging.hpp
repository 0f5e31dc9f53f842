#pragma once

#include "VeskPlatform/Linux/Bus/ServicePresence.hpp"
#include "VeskPlatform/MessagesScriptRunner.hpp"

#include <chrono>
#include <string>
#include <vector>

// Text messages through the phone: what the module of that name offers to the rest of the platform.

namespace vesk {

/// A modem or a phone for text messages, as people call it, and what keeps it from sending; empty where nothing does.
struct MessagingDevice {
    std::string name;
    std::string obstacle;

    bool operator==(const MessagingDevice&) const = default;
};

/// What one service has to offer now. `trouble` is the error of a service that is there and does not answer as it
/// should; empty otherwise.
struct MessagingServiceState {
    std::string name;
    ServicePresence presence = ServicePresence::absent;
    std::vector<MessagingDevice> devices;
    std::string trouble;

    bool operator==(const MessagingServiceState&) const = default;
};

/// Answers messages scripts through ModemManager or KDE Connect, whichever has a device. A listing names the other
/// ends of the conversations by their numbers, several of one conversation with commas between them.
class Messaging : public MessagesScriptRunner {
public:
    /// Looks at the services without starting any; in the order in which they are tried. Never fails.
    virtual std::vector<MessagingServiceState> survey() = 0;
    /// Has the buses start the services that are dormant. One that does not come up stays as it is.
    virtual void start() = 0;
};

/// How long the services are waited for. The buses themselves have no say in it.
struct MessagingPatience {
    /// One request, the usual limit of D-Bus.
    std::chrono::milliseconds request{25'000};
    /// Handing over a message: a modem hands a long one over in parts and waits for the network after each.
    std::chrono::milliseconds sending{120'000};
    /// One request of a survey, which a report or a prompt waits for.
    std::chrono::milliseconds survey{2'000};
    /// A phone that is asked for its conversations: until the first arrives, and between two of them.
    std::chrono::milliseconds firstConversation{5'000};
    std::chrono::milliseconds nextConversation{500};
};

/// The function `veskMessaging` of the module: a new object that belongs to the caller.
using MessagingFactory = Messaging*();

} // namespace vesk
