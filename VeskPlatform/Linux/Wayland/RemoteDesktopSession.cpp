#include "VeskPlatform/Linux/Wayland/RemoteDesktopSession.hpp"

#include <utility>

namespace vesk {
namespace {

constexpr std::uint32_t monitors = 1;
constexpr std::uint32_t untilRevoked = 2;

/// What "Start" gives; the rest of it is of no use here.
struct StartResults {
    BusProperties properties;
    std::vector<RemoteStream> streams;
};

/// `v` of `(ii)`; leaves both as they are for another type.
void readPair(sd_bus_message& message, double& first, double& second) {
    if (busRequired(sd_bus_message_verify_type(&message, 'v', "(ii)")) == 0) {
        busRequired(sd_bus_message_skip(&message, "v"));
        return;
    }
    readItems(message, 'v', "(ii)", [&] {
        readItems(message, 'r', "ii", [&] {
            first = static_cast<double>(readInteger(message, 'i'));
            second = static_cast<double>(readInteger(message, 'i'));
        });
    });
}

RemoteStream readStream(sd_bus_message& message) {
    RemoteStream stream;
    ScreenRectangle& bounds = stream.bounds;
    readItems(message, 'r', "ua{sv}", [&] {
        stream.node = static_cast<std::uint32_t>(readInteger(message, 'u'));
        readItems(message, 'a', "{sv}", [&] {
            readItems(message, 'e', "sv", [&] {
                const std::string name = readText(message);
                if (name == "position")
                    readPair(message, bounds.x, bounds.y);
                else if (name == "size")
                    readPair(message, bounds.width, bounds.height);
                else
                    busRequired(sd_bus_message_skip(&message, "v"));
            });
        });
    });
    return stream;
}

void readStreams(sd_bus_message& message, std::vector<RemoteStream>& streams) {
    readItems(message, 'v', "a(ua{sv})",
              [&] { readItems(message, 'a', "(ua{sv})", [&] { streams.push_back(readStream(message)); }); });
}

StartResults readStart(sd_bus_message& message) {
    StartResults results;
    readItems(message, 'a', "{sv}", [&] {
        readItems(message, 'e', "sv", [&] {
            std::string name = readText(message);
            if (name == "streams")
                readStreams(message, results.streams);
            else
                results.properties[std::move(name)] = readVariant(message);
        });
    });
    return results;
}

} // namespace

std::unique_ptr<RemoteDesktopSession> RemoteDesktopSession::start(DesktopPortal& portal, const RestoreToken& token) {
    const BusMessage created =
        portal.request("RemoteDesktop", "CreateSession", {}, {{"session_handle_token", DesktopPortal::newToken()}});
    if (!created) return nullptr;
    std::unique_ptr<RemoteDesktopSession> session(
        new RemoteDesktopSession(portal, textOf(readProperties(*created), "session_handle")));
    const bool isGranted = session->selectDevices(token) && session->selectMonitors() && session->begin(token);
    return isGranted ? std::move(session) : nullptr;
}

bool RemoteDesktopSession::selectDevices(const RestoreToken& token) {
    PortalOptions options{{"types", std::uint32_t{keyboard | pointer}}, {"persist_mode", untilRevoked}};
    if (const auto kept = token.read()) options["restore_token"] = *kept;
    return portal_.request("RemoteDesktop", "SelectDevices", {{'o', handle_}}, std::move(options)) != nullptr;
}

bool RemoteDesktopSession::selectMonitors() {
    try {
        return portal_.request("ScreenCast", "SelectSources", {{'o', handle_}},
                               {{"types", monitors}, {"multiple", true}})
               != nullptr;
    } catch (const PortalMissing&) { // the keyboard does without
        hasScreenCast_ = false;
        return true;
    }
}

bool RemoteDesktopSession::begin(const RestoreToken& token) {
    const BusMessage started = portal_.request("RemoteDesktop", "Start", {{'o', handle_}, {'s', ""}}, {});
    if (!started) return false;
    StartResults results = readStart(*started);
    devices_ = integerOf(results.properties, "devices", 0);
    streams_ = std::move(results.streams);
    token.write(textOf(results.properties, "restore_token"));
    return true;
}

void RemoteDesktopSession::key(std::uint32_t symbol, bool isDown) {
    portal_.notify(handle_, "NotifyKeyboardKeysym", "iu", static_cast<std::int32_t>(symbol), isDown ? 1U : 0U);
}

void RemoteDesktopSession::button(std::int32_t code, bool isDown) {
    portal_.notify(handle_, "NotifyPointerButton", "iu", code, isDown ? 1U : 0U);
}

void RemoteDesktopSession::move(const RemoteStream& stream, ScreenPoint point) {
    portal_.notify(handle_, "NotifyPointerMotionAbsolute", "udd", stream.node, point.x, point.y);
}

} // namespace vesk
