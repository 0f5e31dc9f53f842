#include "VeskPlatform/Linux/Wayland/DesktopPortal.hpp"

#include "VeskPlatform/Linux/Bus/SessionBus.hpp"

#include <random>

namespace vesk {
namespace {

constexpr const char* service = "org.freedesktop.portal.Desktop";
constexpr std::chrono::milliseconds goodbye{1'000};

/// Whether an error says that the service or its interface is not there.
bool tellsAbsence(const BusError& error) {
    return error.isAbsence() || error.domain() == SD_BUS_ERROR_SERVICE_UNKNOWN
           || error.domain() == SD_BUS_ERROR_NAME_HAS_NO_OWNER || error.domain() == SD_BUS_ERROR_NO_SERVER;
}

void append(sd_bus_message& message, const PortalOptions& options) {
    busRequired(sd_bus_message_open_container(&message, 'a', "{sv}"));
    for (const auto& [name, value] : options) {
        if (const auto* text = std::get_if<std::string>(&value))
            busRequired(sd_bus_message_append(&message, "{sv}", name.c_str(), "s", text->c_str()));
        else if (const auto* number = std::get_if<std::uint32_t>(&value))
            busRequired(sd_bus_message_append(&message, "{sv}", name.c_str(), "u", *number));
        else
            busRequired(sd_bus_message_append(&message, "{sv}", name.c_str(), "b", std::get<bool>(value) ? 1 : 0));
    }
    busRequired(sd_bus_message_close_container(&message));
}

} // namespace

PortalMissing::PortalMissing(const std::string& portal)
    : ErrorRecord("VeskDesktopPortal", 1,
                  "The desktop offers no portal \"" + portal
                      + "\": install xdg-desktop-portal and the portal of your desktop (xdg-desktop-portal-gnome, "
                        "xdg-desktop-portal-kde, xdg-desktop-portal-wlr …).") {}

PortalSilent::PortalSilent(const std::string& portal)
    : ErrorRecord("VeskDesktopPortal", 2, "The desktop's portal \"" + portal + "\" gave no answer in time.") {}

BusObject DesktopPortal::objectOf(const std::string& portal) {
    return {service, "/org/freedesktop/portal/desktop", "org.freedesktop.portal." + portal};
}

std::string DesktopPortal::newToken() {
    std::random_device random;
    std::string token = "vesk";
    for (int i = 0; i < 4; ++i) token += "_" + std::to_string(random());
    return token;
}

BusConnection& DesktopPortal::bus() {
    if (!bus_) bus_ = openSessionBus(patience_.answer);
    return *bus_;
}

std::string DesktopPortal::start(const BusObject& object, const char* method,
                                 const std::vector<PortalArgument>& arguments, const PortalOptions& options) {
    const BusMessage call = bus().newCall(object, method);
    for (const auto& [type, text] : arguments) busRequired(sd_bus_message_append_basic(call.get(), type, text.c_str()));
    append(*call, options);
    const BusMessage reply = bus().answer(*call, patience_.answer);
    return readText(*reply, 'o');
}

/// The signal may come before the answer that names its object, so it is listened to before the call.
BusMessage DesktopPortal::outcome(const std::string& portal, const char* method,
                                  const std::vector<PortalArgument>& arguments, const PortalOptions& options) {
    const BusObject request = objectOf("Request");
    std::string handle;
    BusMessage response = bus().awaitSignal(
        request, "Response", [&] { return handle = start(objectOf(portal), method, arguments, options); },
        patience_.user);
    if (response) return response;
    bus().call(request.with(handle, request.interface), "Close", goodbye);
    throw PortalSilent(portal);
}

BusMessage DesktopPortal::request(const std::string& portal, const char* method,
                                  const std::vector<PortalArgument>& arguments, PortalOptions options) {
    options["handle_token"] = newToken();
    try {
        BusMessage response = outcome(portal, method, arguments, options);
        const bool isGranted = readInteger(*response, 'u') == 0;
        return isGranted ? std::move(response) : nullptr;
    } catch (const BusError& error) {
        if (tellsAbsence(error)) throw PortalMissing(portal);
        throw;
    }
}

void DesktopPortal::require(const std::string& portal) {
    try {
        bus().properties(objectOf(portal), patience_.answer);
    } catch (const BusError& error) {
        // For properties of an interface that an object does not have, GLib has an error of its own.
        if (tellsAbsence(error) || error.domain() == SD_BUS_ERROR_INVALID_ARGS) throw PortalMissing(portal);
        throw;
    }
}

void DesktopPortal::close(const std::string& session) noexcept {
    try {
        bus().call({service, session, "org.freedesktop.portal.Session"}, "Close", goodbye);
    } catch (...) { // it ends with the connection at the latest
    }
}

} // namespace vesk
