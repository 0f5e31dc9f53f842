#pragma once

#include "VeskPlatform/Linux/Wayland/DesktopPortal.hpp"
#include "VeskPlatform/Linux/Wayland/RestoreToken.hpp"
#include "VeskPlatform/ScreenGeometry.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vesk {

/// A monitor that the user shared, and its place in the space of all of them. Its size is 0 where the desktop does not
/// tell.
struct RemoteStream {
    std::uint32_t node = 0;
    ScreenRectangle bounds;

    bool operator==(const RemoteStream&) const = default;
};

/// A session of the RemoteDesktop portal: the user has let this program press keys and move the pointer. It ends with
/// the object. A session that the user ended meanwhile makes its functions throw BusError.
class RemoteDesktopSession {
public:
    /// Asks the user, or finds their permission again by the token, which is replaced by the next one. Null where they
    /// refused. Throws PortalMissing, PortalSilent and BusError.
    static std::unique_ptr<RemoteDesktopSession> start(DesktopPortal& portal, const RestoreToken& token);
    ~RemoteDesktopSession() { portal_.close(handle_); }
    RemoteDesktopSession(const RemoteDesktopSession&) = delete;
    RemoteDesktopSession& operator=(const RemoteDesktopSession&) = delete;

    bool hasKeyboard() const { return (devices_ & keyboard) != 0; }
    bool hasPointer() const { return (devices_ & pointer) != 0; }
    /// Whether the desktop can share monitors at all; without them the pointer cannot be moved to a place.
    bool hasScreenCast() const { return hasScreenCast_; }
    /// Empty where no monitor is shared.
    const std::vector<RemoteStream>& streams() const { return streams_; }

    /// A symbol as X11 numbers them.
    void key(std::uint32_t symbol, bool isDown);
    /// A button as the kernel numbers them (linux/input-event-codes.h).
    void button(std::int32_t code, bool isDown);
    /// The point is in the stream's own space.
    void move(const RemoteStream& stream, ScreenPoint point);

private:
    enum Devices : std::uint32_t { keyboard = 1, pointer = 2 };

    RemoteDesktopSession(DesktopPortal& portal, std::string handle) : portal_(portal), handle_(std::move(handle)) {}
    bool selectDevices(const RestoreToken& token);
    bool selectMonitors();
    bool begin(const RestoreToken& token);

    DesktopPortal& portal_;
    std::string handle_;
    std::int64_t devices_ = 0;
    bool hasScreenCast_ = true;
    std::vector<RemoteStream> streams_;
};

} // namespace vesk
