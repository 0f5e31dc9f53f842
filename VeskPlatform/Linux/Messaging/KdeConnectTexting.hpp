#pragma once

#include "VeskPlatform/Linux/Messaging/TextingService.hpp"

namespace vesk {

/// Paired phones that can be reached, through the daemon of KDE Connect. The chats are the phone's own; a daemon that
/// has not heard of any yet asks the phone for them.
class KdeConnectTexting : public TextingService {
public:
    explicit KdeConnectTexting(const MessagingPatience& patience) : patience_(patience) {}

    std::string name() const override { return "KDE Connect"; }
    BusKind bus() const override { return BusKind::session; }
    std::string busName() const override { return "org.kde.kdeconnect"; }
    std::vector<TextingDevice> devices(BusConnection& bus, std::chrono::milliseconds patience) override;
    std::vector<TextingChat> chats(BusConnection& bus, const TextingDevice& device) override;
    void send(BusConnection& bus, const TextingDevice& device, const MessagesSendQuestion& message) override;

private:
    BusObject daemon() const;
    BusObject object(const TextingDevice& device, const char* interface) const;
    std::string obstacleOf(BusConnection& bus, const TextingDevice& device, std::chrono::milliseconds patience) const;

    MessagingPatience patience_;
};

} // namespace vesk
