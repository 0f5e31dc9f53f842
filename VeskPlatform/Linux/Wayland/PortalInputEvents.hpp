#pragma once

#include "VeskPlatform/InputEvents.hpp"
#include "VeskPlatform/Linux/Wayland/RemoteDesktopSession.hpp"

#include <memory>
#include <optional>

namespace vesk {

/// Input through the RemoteDesktop portal. The session starts with the first event that is made; a user who refused it
/// is not asked again, and no event can be made. Making one throws PortalMissing, PortalSilent and BusError.
class PortalInputEvents : public InputEvents {
public:
    PortalInputEvents(DesktopPortal& portal, RestoreToken token);

    std::unique_ptr<PreparedInputEvent> create(const MouseEvent& event) override;
    std::unique_ptr<PreparedInputEvent> create(const KeyboardEvent& event) override;
    void post(const PreparedInputEvent& event) override;

private:
    /// Null where the user refused.
    RemoteDesktopSession* session();
    void send(const MouseEvent& event);
    void send(const KeyboardEvent& event);
    std::optional<std::uint32_t> symbolOfUnit(char16_t unit, bool isDown);

    DesktopPortal& portal_;
    RestoreToken token_;
    bool isAsked_ = false;
    std::unique_ptr<RemoteDesktopSession> session_;
    std::optional<ScreenPoint> pointer_;
    /// Of a character whose second unit is to come.
    char16_t firstUnit_ = 0;
};

} // namespace vesk
