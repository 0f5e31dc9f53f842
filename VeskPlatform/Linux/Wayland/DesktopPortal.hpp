#pragma once

#include "VeskPlatform/Linux/Bus/BusConnection.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace vesk {

/// The desktop offers no portal of a kind. The description says what to install. Domain "VeskDesktopPortal", code 1.
class PortalMissing : public ErrorRecord {
public:
    explicit PortalMissing(const std::string& portal);
};

/// A portal whose user never decided, or that does not answer. Domain "VeskDesktopPortal", code 2.
class PortalSilent : public ErrorRecord {
public:
    explicit PortalSilent(const std::string& portal);
};

struct PortalPatience {
    /// One answer of the portal itself, the usual limit of D-Bus.
    std::chrono::milliseconds answer{25'000};
    /// A user who is asked.
    std::chrono::milliseconds user{120'000};
};

/// A text with its D-Bus type: 's' or 'o'.
using PortalArgument = std::pair<char, std::string>;
using PortalOptions = std::map<std::string, std::variant<std::string, std::uint32_t, bool>>;

/// The portals of the desktop (org.freedesktop.portal.*) on the session bus, which is connected on first use. Failures
/// other than those above are BusErrors.
class DesktopPortal {
public:
    explicit DesktopPortal(PortalPatience patience = {}) : patience_(patience) {}

    /// Calls a method whose outcome comes as the signal of a request object: `arguments`, then `options`. Its results
    /// (`a{sv}`, not read yet), or null where the user or the desktop refused. `portal` is as in "Screenshot".
    BusMessage request(const std::string& portal, const char* method, const std::vector<PortalArgument>& arguments,
                       PortalOptions options);

    /// Throws PortalMissing where the desktop does not offer the portal. The user is asked nothing.
    void require(const std::string& portal);

    /// Calls a method that is over when it is answered: the session, no options, and `types` as in BusConnection::call.
    template <class... Arguments>
    void notify(const std::string& session, const char* method, const char* types, Arguments... arguments) {
        const std::string all = std::string("oa{sv}") + types;
        bus().call(objectOf("RemoteDesktop"), method, patience_.answer, all.c_str(), session.c_str(), 0, arguments...);
    }
    /// Ends a session; one that has ended already is no failure.
    void close(const std::string& session) noexcept;

    /// A name for a request or a session that nobody guesses.
    static std::string newToken();

private:
    static BusObject objectOf(const std::string& portal);
    BusConnection& bus();
    std::string start(const BusObject& object, const char* method, const std::vector<PortalArgument>& arguments,
                      const PortalOptions& options);
    BusMessage outcome(const std::string& portal, const char* method, const std::vector<PortalArgument>& arguments,
                       const PortalOptions& options);

    PortalPatience patience_;
    std::optional<BusConnection> bus_;
};

} // namespace vesk
