#pragma once

#include "VeskPlatform/Linux/Messaging/Messaging.hpp"
#include "VeskPlatform/Linux/Messaging/TextingService.hpp"

#include <memory>

namespace vesk {

/// Takes the first device that can send, ModemManager's before KDE Connect's, for listings too. Fails with the exit
/// status 1: without such a device, with what stands in the way of each; otherwise with the service's own message.
class DeviceMessaging : public Messaging {
public:
    explicit DeviceMessaging(const MessagingPatience& patience = {});

    ScriptRunResult run(const MessagesScript& script) override;
    std::vector<MessagingServiceState> survey() override;
    void start() override;

private:
    MessagingPatience patience_;
    std::vector<std::unique_ptr<TextingService>> services_;
};

} // namespace vesk
