#pragma once

#include "VeskPlatform/Linux/Messaging/TextingService.hpp"

namespace vesk {

/// Modems in or beside this computer, through ModemManager's interfaces of version 1.x. The chats are those of the
/// messages that the modem and its card hold. What is sent is no longer kept than the daemon runs.
class ModemManagerTexting : public TextingService {
public:
    explicit ModemManagerTexting(const MessagingPatience& patience) : patience_(patience) {}

    std::string name() const override { return "ModemManager"; }
    BusKind bus() const override { return BusKind::system; }
    std::string busName() const override { return "org.freedesktop.ModemManager1"; }
    std::vector<TextingDevice> devices(BusConnection& bus, std::chrono::milliseconds patience) override;
    std::vector<TextingChat> chats(BusConnection& bus, const TextingDevice& device) override;
    void send(BusConnection& bus, const TextingDevice& device, const MessagesSendQuestion& message) override;

private:
    MessagingPatience patience_;
};

} // namespace vesk
